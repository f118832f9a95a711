#include "core/answer_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

void SetIDs(Survey& survey, const std::vector<qint32>& ids) {
    survey.Samples.Allocate(static_cast<qint32>(ids.size()));
    for (size_t i = 0; i < ids.size(); ++i)
        survey.Samples.SetIDno(static_cast<qint32>(i), ids[i]);
}

std::vector<qint32> IDsOf(const Survey& survey) {
    return {survey.Samples.IDs(), survey.Samples.IDs() + survey.SampleCount()};
}

// The told steps of the sort, one by one, quadratic as they are.
std::vector<qint32> SortedBySteps(std::vector<qint32> ids) {
    if (std::is_sorted(ids.begin(), ids.end())) return ids;
    bool known = false;
    qint32 minimum = 0;
    for (size_t i = 0; i + 1 < ids.size(); ++i) {
        size_t found = i;
        if (known && ids[i] != minimum + 1) known = false;
        if (!known)
            for (size_t j = i; j < ids.size(); ++j)
                if (ids[j] < ids[found]) found = j;
        minimum = ids[found];
        known = true;
        std::rotate(ids.begin() + static_cast<std::ptrdiff_t>(i), ids.begin() + static_cast<std::ptrdiff_t>(found),
                    ids.begin() + static_cast<std::ptrdiff_t>(found) + 1);
    }
    return ids;
}

TEST(SlowAnswerStore, SortingGivesWhatItsStepsGiveRepeatedIDsIncluded) {
    Random random(3);
    ScriptedInterface ui;
    for (int round = 0; round < 400; ++round) {
        Survey survey = MakeRandomSurvey(random, 3, 0);
        std::vector<qint32> ids(static_cast<size_t>(Pick(random, 0, 60)));
        for (auto& id : ids)
            id = Pick(random, -20, round % 2 == 0 ? 20 : 1000);
        if (round == 0) ids = {1, 2, 1};
        SetIDs(survey, ids);
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
            survey.Samples.SetPreLimitBits(dno, static_cast<qint16>(survey.Samples.IDno(dno)));
        SortSamples(survey, ui);
        EXPECT_EQ(IDsOf(survey), SortedBySteps(ids));
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)  // what a sample holds travels with it
            EXPECT_EQ(survey.Samples.PreLimitBits(dno), static_cast<qint16>(survey.Samples.IDno(dno)));
    }
}

// Random additions, deletions, changes of ID and moves, against a map from ID to what the sample holds.
TEST(AnswerStore, ListKeepsEverySampleWithItsAnswersAndTexts) {
    Random random(4);
    ScriptedInterface ui;
    Survey survey = MakeRandomSurvey(random, 8, 0);
    survey.Questions[0].Anum = 2;
    survey.Choices(1, 0).Status = 1;
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    std::map<qint32, int> held;
    for (int step = 0; step < 4000; ++step) {
        const qint32 id = Pick(random, -300, 300) * (step % 5 == 0 ? 7'000'000 : 1);
        const qint32 dno = DnoOfID(survey, id);
        ASSERT_EQ(dno >= 0, held.contains(id));
        const int what = Pick(random, 0, 3);
        if (what < 2) {
            const qint32 added = AddSample(survey, ui, id);
            ASSERT_EQ(added < 0, held.contains(id));
            if (added < 0) continue;
            const qint16 answers[] = {1, 1};
            const QString texts[] = {QString::number(step), QString()};
            qint16 none = -1, choices[kMaxAnswers];
            GetAnswers(survey, added, 0, none, choices);
            ASSERT_EQ(none, 0);
            SetAnswersEssay(survey, added, 0, 2, answers, texts);
            held[id] = step;
        } else if (dno >= 0 && what == 2) {
            DeleteSample(survey, ui, dno);
            held.erase(id);
        } else if (dno >= 0) {
            const qint32 other = Pick(random, -400, 400);
            const qint32 moved = SampleChangeID(survey, ui, dno, other);
            ASSERT_EQ(moved < 0, held.contains(other));
            if (moved < 0) continue;
            ASSERT_EQ(survey.Samples.IDno(moved), other);
            held[other] = held[id];
            held.erase(id);
        }
        ASSERT_TRUE(IDsAreSorted(survey));
    }
    ASSERT_EQ(survey.SampleCount(), static_cast<qint32>(held.size()));
    for (const auto& [id, step] : held) {
        qint16 count;
        qint16 answers[kMaxAnswers];
        QString texts[kMaxAnswers];
        GetAnswersEssay(survey, DnoOfID(survey, id), 0, count, answers, texts);
        EXPECT_EQ(count, 2);
        EXPECT_EQ(texts[0], QString::number(step));
    }
}

TEST(AnswerStore, FindingTellsBetweenFromBeyond) {
    Survey survey;
    NewSurveyBody(survey);
    const struct {
        std::vector<qint32> ids;
        qint32 id;
        int result;
        qint32 position;
    } cases[] = {
        {{}, 5, 0, 0},
        {{-2147483647 - 1, -10, 0, 7, 2147483647}, 3, -1, 3},
        {{-2147483647 - 1, -10, 0, 7, 2147483647}, 7, 0, 3},
        {{-2147483647 - 1, -10, 0, 7, 2147483647}, 2147483647, 0, 4},
        {{3, 4, 9}, 1, 0, -1},
        {{3, 4, 9}, 100, 0, 3},
    };
    for (const auto& [ids, id, result, position] : cases) {
        SetIDs(survey, ids);
        qint32 found = 99;
        EXPECT_EQ(FindSample(survey, id, found), result) << id;
        EXPECT_EQ(found, position) << id;
    }
}

// Texts go with answers whose choice bears one; clearing a question empties its first slot and leaves those behind.
TEST(AnswerStore, TextsFollowTheirAnswers) {
    SurveyBuilder builder;
    for (const int q : {0, 1})
        builder.Question(QString::number(q), QString(), 3, {u"a"_s, u"b"_s, u"c"_s});
    builder.Status(1, 2, {kEssay});
    builder.PreLimit(3, {SurveyBuilder::Line(3, 1, 2)});
    builder.Sample({{}, {{1, u"捨てる"_s}, {2, u"二"_s}, {2, u"三"_s}}});
    Survey& survey = builder.Get();
    const auto texts = [&] {
        return QStringList{survey.Samples.Essay(0, 0), survey.Samples.Essay(0, 1), survey.Samples.Essay(0, 2)};
    };
    EXPECT_EQ(texts(), (QStringList{QString(), u"二"_s, u"三"_s}));
    EXPECT_EQ(survey.Samples.PreLimitBits(0), -1);
    qint16 count = 0;
    qint16 answers[kMaxAnswers] = {};
    EXPECT_THROW(SetAnswers(survey, 0, 1, 4, answers), RuntimeError);
    EXPECT_THROW(GetAnswers(survey, 0, 2, count, answers), RuntimeError);

    WorkingSample sample(survey);
    GetAllAnswersEssay(survey, 0, sample.AnswerCount.data(), sample.SlotCno.data(), sample.SlotEssay.data());
    EXPECT_EQ(sample.AnswerCount, (std::vector<qint16>{0, 3, 0}));
    EXPECT_EQ(sample.SlotEssay[1], u"二"_s);
    sample.SlotCno = {3, 2, 1, 0, 0, 0, 0};
    sample.AnswerCount = {1, 2, 0};
    sample.SlotEssay[1] = u"新"_s;
    SetAllAnswersEssay(survey, 0, sample.AnswerCount.data(), sample.SlotCno.data(), sample.SlotEssay.data());
    EXPECT_EQ(texts(), (QStringList{u"新"_s, QString(), u"三"_s}));

    const qint16 none = 0;
    const QString text = u"捨てる"_s;
    SetAnswersEssay(survey, 0, 1, 1, &none, &text);
    GetAnswers(survey, 0, 1, count, answers);
    EXPECT_TRUE(count == 0 && answers[0] == 0);
    EXPECT_EQ(texts(), (QStringList{QString(), QString(), u"三"_s}));
    EXPECT_FALSE(SampleHasPreLimit(survey, 0, 3));
    EXPECT_TRUE(SampleHasPreLimit(survey, 0, 4));
}

}  // namespace
}  // namespace quibra
