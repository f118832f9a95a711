// The rewrite of samples behind random edits, against the two passes in which it is told.
#include <gtest/gtest.h>

#include "companion/limit_terms.h"
#include "conditions/limit_lists.h"
#include "core/answer_store.h"
#include "core/labels.h"
#include "design/editor_rig.h"
#include "design/told_rewrite.h"
#include "support/error_of.h"
#include "support/qt_printers.h"
#include "support/random_survey.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

constexpr qint32 kSamples = 300;

// A condition of one or two lines on questions before q, so that nothing depends on itself.
void PutLimit(Random& random, Survey& survey, int q) {
    if (q == 0) return;
    auto column = survey.QLimit.Column(q);
    const int lines = Pick(random, 1, 2);
    for (int k = 1; k <= lines; ++k) {
        const int source = Pick(random, 0, q - 1);
        const int kind = k == 1 ? (Pick(random, 0, 3) == 0 ? kLimitNot : kLimitAnd) : Pick(random, kLimitOr, kLimitAnd);
        column[static_cast<size_t>(k)] = {
            static_cast<qint16>(kind), PackPosition(source, Pick(random, 0, survey.Questions[source].ChoiceCount - 1))};
    }
}

// A random survey with everything that a rewrite can meet: status bits, texts, also stale ones, conditions, damage.
Survey MakeLivelySurvey(Random& random, qint32 samples) {
    Survey survey = MakeRandomSurvey(random, 8, samples);
    std::vector<std::vector<qint16>> flat;
    std::vector<std::vector<qint16>> counts;
    for (qint32 dno = 0; dno < samples; ++dno) {
        flat.emplace_back(static_cast<size_t>(survey.AnswerSlots) + 1);
        counts.emplace_back(static_cast<size_t>(survey.QuestionCount) + 1);
        GetAllAnswers(survey, dno, counts.back().data(), flat.back().data());
    }
    for (int q = 0; q < survey.QuestionCount; ++q) {
        for (int c = 1; c < survey.Questions[q].ChoiceCount; ++c)
            if (Pick(random, 0, 3) == 0) survey.Choices(c, q).Status = static_cast<qint16>(Pick(random, 0, 63));
        if (Pick(random, 0, 2) == 0) PutLimit(random, survey, q);
    }
    for (int k = 0; k < kPreLimitSlots; k += 5)
        std::ranges::copy(MakeRandomColumn(random, survey, 3), survey.PreLimit.Column(k).begin());
    RecalcLayout(survey);
    const SampleList old = survey.Samples;
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    survey.Samples.Allocate(samples);
    for (qint32 dno = 0; dno < samples; ++dno) {
        survey.Samples.SetIDno(dno, old.IDno(dno));
        maAno_push_verstC(survey.QuestionCount, survey.QIdx.Data(), survey.Samples.Bits(dno),
                          counts[static_cast<size_t>(dno)].data(), flat[static_cast<size_t>(dno)].data());
        // A gap, as no setter leaves one.
        if (Pick(random, 0, 9) == 0) survey.Samples.Packed(dno)[0] ^= static_cast<unsigned char>(Pick(random, 0, 255));
        for (int slot = 0; slot < survey.EssaySlots; ++slot)
            if (Pick(random, 0, 2) == 0) survey.Samples.SetEssay(dno, slot, u"文%1"_s.arg(Pick(random, 0, 2)));
    }
    return survey;
}

// One edit by a user who agrees to everything. Errors are the user's own: a question that depends on itself.
void EditAtRandom(Random& random, EditorRig& rig, DefinitionEditor& editor, bool insertOnly) {
    rig.ui.messageAnswers.assign(9, Answer::Ok);
    Survey& survey = rig.session.survey;
    editor.SelectQuestion(Pick(random, 0, survey.QuestionCount));
    editor.SelectChoice(editor.HasQuestion() ? Pick(random, 0, survey.Questions[editor.Question()].ChoiceCount) : 0);
    const int edit = Pick(random, 0, insertOnly ? 2 : 12);
    LimitList limit;
    limit[1] = {static_cast<qint16>(Pick(random, 3, 4)), PackPosition(Pick(random, 0, survey.QuestionCount - 1), 1)};
    rig.windows.picked = limit;
    const Survey before = survey;
    const int error = ErrorOf([&] {
        switch (edit) {
            case 0:
                rig.ui.inputAnswers = {Pick(random, 0, 1) == 0 ? QString() : QString::number(Pick(random, 1, 9))};
                rig.ui.questionAnswers = {Pick(random, 0, survey.QuestionCount - 1)};
                return editor.InsertQuestion();
            case 1:
            case 2:
                return editor.InsertChoice();
            case 3:
                return editor.DeleteQuestion();
            case 4:
            case 5:
                return editor.DeleteChoice();
            case 6:
            case 7:
                return editor.SetAnum(Pick(random, 1, std::max(editor.MostAnswers(), 1)));
            case 8:
                editor.SetStatus(kEssay, Pick(random, 0, 1));
                return;
            case 9:
                editor.SetStatus(Pick(random, kExclusive, kOther), Pick(random, 0, 1));
                return;
            case 10:
                return editor.MoveUp();
            case 11:
                return editor.MoveDown();
            default:
                return editor.EditLimit();
        }
    });
    if (error == 0) return;
    EXPECT_EQ(error, kErrorOverflow);
    EXPECT_TRUE(SameDefinition(survey, before));
}

TEST(SampleRewrite, GivesTheSamplesOfTheToldPasses) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        Random random(seed);
        const Survey loaded = MakeLivelySurvey(random, kSamples);
        EditorRig rig(loaded);
        rig.windows.correction = static_cast<qint16>(Pick(random, 0, 31));
        DefinitionEditor editor(rig.session, rig.windows);
        const int edits = Pick(random, 1, 12);
        for (int i = 0; i < edits; ++i)
            EditAtRandom(random, rig, editor, false);
        const StructureMaps maps = editor.Maps();
        const bool rewrites = editor.IsChanged();
        rig.ui.messageAnswers = {Answer::Ok};
        ASSERT_EQ(ErrorOf([&] { EXPECT_EQ(editor.Finish(), EditorOutcome::Done); }), 0) << seed;
        Survey told = rig.session.survey;
        told.PreLimit = loaded.PreLimit;
        if (rewrites)
            ToldRewrite(loaded, maps, told);
        else
            told.Samples = loaded.Samples;
        ASSERT_EQ(SamplesOf(rig.session.survey), SamplesOf(told)) << "seed " << seed;
        EXPECT_EQ(rig.session.survey.PreLimit(1, 0).a, 0);
    }
}

// Conditions of a question that nobody has answered say of every sample what they said before.
TEST(SampleRewrite, ConditionsSayTheSameBehindInsertedQuestionsAndChoices) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        Random random(seed);
        EditorRig rig(MakeLivelySurvey(random, kSamples));
        Survey& survey = rig.session.survey;
        const auto rewriteBehind = [&](const std::function<void(DefinitionEditor&)>& edit) {
            DefinitionEditor editor(rig.session, rig.windows);
            edit(editor);
            rig.ui.messageAnswers.assign(3, Answer::Ok);
            editor.Finish();
            return editor.Maps();
        };
        rig.windows.correction = 15;
        // Until nothing is left to correct.
        for (int i = 0; i < 4; ++i)
            rewriteBehind([&](DefinitionEditor& editor) {
                rig.ui.messageAnswers.assign(3, Answer::Ok);
                editor.SetStatus(kExclusive, true);
                editor.SetStatus(kExclusive, false);
            });
        std::vector<LimitList> conditions;
        rewriteBehind([&](DefinitionEditor& editor) {
            rig.ui.messageAnswers.assign(3, Answer::Ok);
            editor.SelectQuestion(survey.QuestionCount);
            rig.ui.inputAnswers = {u"1"_s};
            editor.InsertQuestion();
        });
        const int asker = survey.QuestionCount - 1;
        PutLimit(random, survey, asker);
        const LimitList before(survey.QLimit.Column(asker));
        std::vector<bool> held;
        for (qint32 dno = 0; dno < kSamples; ++dno)
            held.push_back(TestLimit(survey, dno, before));
        const StructureMaps maps = rewriteBehind([&](DefinitionEditor& editor) {
            for (int i = 0; i < 6; ++i)
                EditAtRandom(random, rig, editor, true);
        });
        const LimitList after(survey.QLimit.Column(maps.QuestionMap[asker]));
        EXPECT_EQ(after.LineCount(), before.LineCount());
        for (qint32 dno = 0; dno < kSamples; ++dno)
            ASSERT_EQ(TestLimit(survey, dno, after), held[static_cast<size_t>(dno)]) << seed << ' ' << dno;
    }
}

TEST(SampleRewrite, CancelBringsBackEveryByteOfTheDefinition) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        Random random(seed);
        const Survey loaded = MakeLivelySurvey(random, 20);
        EditorRig rig(loaded);
        {
            DefinitionEditor editor(rig.session, rig.windows);
            for (int i = 0; i < 20; ++i)
                EditAtRandom(random, rig, editor, false);
            editor.SelectQuestion(0);
            editor.SetQuesText(1, u"別の本文"_s);
            EXPECT_FALSE(SameDefinition(rig.session.survey, loaded));
            rig.ui.messageAnswers = {seed % 2 == 0 ? Answer::Ok : Answer::Cancel};
            EXPECT_EQ(editor.Cancel(), seed % 2 == 0 ? EditorOutcome::Done : EditorOutcome::Open);
        }
        EXPECT_TRUE(SameDefinition(rig.session.survey, loaded));
        EXPECT_EQ(SamplesOf(rig.session.survey), SamplesOf(loaded));
        EXPECT_FALSE(rig.session.IsChanged());
    }
}

}  // namespace
}  // namespace quibra
