#include "conditions/limit_editor.h"

#include <gtest/gtest.h>

#include "companion/limit_terms.h"
#include "core/answer_store.h"
#include "support/qt_printers.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

LimitLine Line(int kind, int q, int c, int rank = 0) {
    return SurveyBuilder::Line(kind, q, c, rank);
}

QString Warning(const QString& text) {
    return u"message 48 クイブラ: "_s + text + u" -> Ok"_s;
}

class LimitEditorTest : public testing::Test {
  protected:
    LimitEditorTest() : session(ui, QString()) {
        SurveyBuilder builder;
        builder.Question(u"性別"_s, u"お答えください"_s, 1, {u"男"_s, u"女"_s});
        builder.Question(u"果物"_s, u"好きな順に"_s, 3, {u"りんご"_s, u"みかん"_s, u"もも"_s, u"なし"_s, u"かき"_s});
        session.survey = builder.Get();
    }

    // What a person does: chooses, then presses one of the four buttons.
    static void Write(LimitEditor& editor, int kind, int q, int c, int rank = 0) {
        editor.SelectQuestion(q);
        editor.SelectChoice(c);
        editor.SelectRank(rank);
        editor.AddLimitLine(kind);
    }

    std::vector<LimitLine> SlotLines(int k) const {
        const LimitList list(session.survey.PreLimit.Column(k));
        return {list.Data() + 1, list.Data() + 1 + list.LineCount()};
    }

    ScriptedInterface ui;
    SurveySession session;
};

TEST_F(LimitEditorTest, EachLineGoesToTheSlotAtOnceAndIsShownInWords) {
    session.survey.PreLimit(1, 3) = Line(kLimitAnd, 0, 1);
    LimitEditor editor(session);
    EXPECT_EQ(editor.Rows(), (QStringList{u"限定条件その0↓"_s, u"↑以上"_s}));
    EXPECT_EQ(editor.Chosen().choice, 1);
    EXPECT_EQ(editor.PreLimitRows()[2], u"条件なし"_s);
    EXPECT_FALSE(session.IsChanged());

    editor.SelectSlot(3);
    Write(editor, kLimitOr, 1, 2, 1);
    Write(editor, kLimitNot, 1, 3);
    Write(editor, kLimitTo, 1, 5);
    EXPECT_EQ(editor.Rows(), (QStringList{u"限定条件その3↓"_s, u"性別(1)男"_s, u"　又は1位に果物(2)みかん"_s,
                                          u"除く果物(3)もも"_s, u"　から果物(5)かき"_s, u"↑以上"_s}));
    EXPECT_EQ(SlotLines(3), (std::vector{Line(kLimitAnd, 0, 1), Line(kLimitOr, 1, 2, 1), Line(kLimitNot, 1, 3),
                                         Line(kLimitTo, 1, 5)}));
    EXPECT_EQ(editor.PreLimitRows()[3], u"男又は1位にみかん，除くももからかき"_s);
    EXPECT_TRUE(editor.PreChanged(3));
    EXPECT_FALSE(editor.PreChanged(0));
    EXPECT_TRUE(session.IsChanged());

    // A line is taken up again; a から has no rank.
    editor.SelectRow(2);
    EXPECT_EQ(editor.Chosen().question, 1);
    EXPECT_EQ(editor.Chosen().choice, 2);
    EXPECT_EQ(editor.Chosen().rank, 1);
    editor.SelectRow(4);
    EXPECT_EQ(editor.Chosen().choice, 5);
    EXPECT_EQ(editor.Chosen().rank, 0);
    EXPECT_EQ(editor.FillRankCombo(), (QStringList{u"順位不問"_s, u"1位で回答"_s, u"2位で回答"_s, u"3位で回答"_s}));

    // The heading's insertion point is position 1, and a second line goes behind the first.
    editor.SelectRow(0);
    Write(editor, kLimitAnd, 0, 2);
    Write(editor, kLimitAnd, 1, 4);
    EXPECT_EQ(editor.Rows().mid(0, 4),
              (QStringList{u"限定条件その3↓"_s, u"性別(2)女"_s, u"果物(4)なし"_s, u"性別(1)男"_s}));

    editor.SelectRow(1);
    editor.DeleteLine();
    EXPECT_EQ(editor.Row(), 0);
    EXPECT_EQ(SlotLines(3).size(), 5u);
    EXPECT_TRUE(ui.transcript.isEmpty());
    editor.DeleteLine();
    editor.SelectRow(6);
    editor.DeleteLine();
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"beep"_s, u"beep"_s}));
    EXPECT_EQ(SlotLines(3).front(), Line(kLimitAnd, 1, 4));

    editor.ClearLines();
    EXPECT_EQ(editor.Rows(), (QStringList{u"限定条件その3↓"_s, u"↑以上"_s}));
    EXPECT_EQ(editor.PreLimitRows()[3], u"条件なし"_s);
    EXPECT_TRUE(SlotLines(3).empty());
}

TEST_F(LimitEditorTest, ARangeIsHeldToItsRules) {
    LimitEditor editor(session);
    Write(editor, kLimitTo, 1, 4, 2);
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{Warning(u"『から』では順位は指定できません"_s),
                                                Warning(u"「から」の前には「から」以外の条件が必要です。"_s)}));
    EXPECT_EQ(SlotLines(0), (std::vector{Line(kLimitAnd, 1, 4)}));
    EXPECT_EQ(editor.Chosen().rank, 0);

    Write(editor, kLimitTo, 1, 4);
    Write(editor, kLimitTo, 0, 1);
    EXPECT_EQ(ui.TakeTranscript(),
              (QStringList{Warning(u"直前のと同じ選択肢です。"_s),
                           Warning(u"「から」は直前の条件と質問文が同じでなければいけません。"_s)}));
    EXPECT_EQ(editor.Rows().size(), 3);

    // A lower choice than the line's before it: the two change places.
    Write(editor, kLimitTo, 1, 2);
    EXPECT_EQ(editor.Rows().mid(1), (QStringList{u"果物(2)みかん"_s, u"　から果物(4)なし"_s, u"↑以上"_s}));
    EXPECT_EQ(SlotLines(0), (std::vector{Line(kLimitAnd, 1, 2), Line(kLimitTo, 1, 4)}));
    EXPECT_TRUE(ui.transcript.isEmpty());

    // No range of a range.
    Write(editor, kLimitTo, 1, 5);
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{Warning(u"「から」の前には「から」以外の条件が必要です。"_s)}));
    EXPECT_EQ(SlotLines(0).back(), Line(kLimitAnd, 1, 5));
}

TEST_F(LimitEditorTest, ARefusedRangeInsideTheListLeavesALineDoubledUntilTheListIsShownAnew) {
    LimitEditor editor(session);
    Write(editor, kLimitAnd, 1, 1);
    Write(editor, kLimitAnd, 1, 2);
    editor.SelectRow(2);
    Write(editor, kLimitTo, 1, 1);
    EXPECT_EQ(ui.Lines(u"message"_s).size(), 1);
    EXPECT_EQ(editor.Rows().size(), 4);
    EXPECT_EQ(SlotLines(0).size(), 2u);
    // The next stored line carries it along.
    editor.SelectRow(3);
    Write(editor, kLimitNot, 1, 5);
    EXPECT_EQ(editor.Rows().mid(1),
              (QStringList{u"果物(1)りんご"_s, u"果物(2)みかん"_s, u"除く果物(5)かき"_s, u"↑以上"_s}));
    editor.SelectSlot(0);
    EXPECT_EQ(editor.Rows().mid(1), (QStringList{u"果物(1)りんご"_s, u"果物(2)みかん"_s, u"除く果物(5)かき"_s,
                                                 u"果物(2)みかん"_s, u"↑以上"_s}));
    // However many are doubled, the list keeps its closing line.
    for (int i = 0; i < 20; ++i) {
        editor.SelectRow(2);
        Write(editor, kLimitTo, 1, 1);
    }
    editor.SelectRow(2);
    Write(editor, kLimitAnd, 1, 3);
    EXPECT_EQ(SlotLines(0).size(), 14u);
}

TEST_F(LimitEditorTest, AnAlternativeAtTheTopIsShownButEndsTheList) {
    LimitEditor editor(session);
    Write(editor, kLimitOr, 1, 2);
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{Warning(u"「又は」を先頭にすることはできません。"_s)}));
    EXPECT_EQ(editor.Rows(), (QStringList{u"限定条件その0↓"_s, u"果物(2)みかん"_s, u"↑以上"_s}));
    EXPECT_EQ(editor.PreLimitRows()[0], u"条件なし"_s);
    EXPECT_EQ(session.survey.PreLimit(1, 0), Line(kLimitNone, 1, 2));
    Write(editor, kLimitAnd, 1, 3);
    editor.SelectSlot(0);
    EXPECT_EQ(editor.Rows().size(), 2);
}

TEST_F(LimitEditorTest, FourteenLinesFitAndNoMore) {
    // A damaged file may fill all fifteen.
    std::ranges::fill(session.survey.PreLimit.Column(1).subspan(1), Line(kLimitAnd, 0, 1));
    LimitEditor editor(session);
    for (int i = 0; i < 14; ++i)
        Write(editor, kLimitAnd, 1, 1 + i % 5);
    EXPECT_TRUE(ui.transcript.isEmpty());
    const auto lines = SlotLines(0);
    EXPECT_EQ(lines.size(), 14u);
    const QStringList refused{u"beep"_s, Warning(u"条件は14個までです。"_s)};
    Write(editor, kLimitAnd, 0, 1);
    EXPECT_EQ(ui.TakeTranscript(), refused);
    EXPECT_EQ(SlotLines(0), lines);
    editor.SelectSlot(1);
    EXPECT_EQ(editor.Rows().size(), 17);
    Write(editor, kLimitAnd, 0, 1);
    EXPECT_EQ(ui.TakeTranscript(), refused);
    editor.SelectRow(15);
    editor.DeleteLine();
    EXPECT_EQ(SlotLines(1).size(), 14u);
}

TEST_F(LimitEditorTest, APickerChangesTheCallersListOnlyAtItsClose) {
    LimitList list;
    list[0] = {7, static_cast<qint16>(0x8002)};
    list[1] = Line(kLimitAnd, 1, 3, 2);
    LimitEditor editor(session, list, kPickPreLimits);
    EXPECT_TRUE(editor.OffersPreLimits());
    EXPECT_EQ(editor.Rows(), (QStringList{u"さらに加える条件↓"_s, u"2位に果物(3)もも"_s, u"↑以上"_s}));
    EXPECT_TRUE(editor.IsPicked(1));
    EXPECT_TRUE(editor.IsPicked(15));
    EXPECT_TRUE(editor.MayDiscard());

    Write(editor, kLimitOr, 0, 2);
    editor.Pick(1, false);
    editor.Pick(4, true);
    EXPECT_EQ(editor.LimitPass()[0], list[0]);
    EXPECT_EQ(editor.LimitPass().LineCount(), 1);
    EXPECT_TRUE(SlotLines(0).empty());
    EXPECT_FALSE(editor.MayDiscard());
    ui.messageAnswers = {Answer::Ok};
    EXPECT_TRUE(editor.MayDiscard());
    EXPECT_EQ(ui.TakeTranscript(),
              (QStringList{u"message 289 クイブラ: 変更した限定条件を使わずに閉じます。 -> Cancel"_s,
                           u"message 289 クイブラ: 変更した限定条件を使わずに閉じます。 -> Ok"_s}));

    editor.Close({});
    EXPECT_EQ(editor.LimitPass()[0], (LimitLine{7, static_cast<qint16>(0x8010)}));
    EXPECT_EQ(editor.LimitPass()[1], list[1]);
    EXPECT_EQ(editor.LimitPass()[2], Line(kLimitOr, 0, 2));
    EXPECT_FALSE(session.IsChanged());
    EXPECT_TRUE(ui.transcript.isEmpty());

    EXPECT_FALSE(LimitEditor(session, list, kPickLines).OffersPreLimits());
    EXPECT_TRUE(LimitEditor(session, list, kPickForCross).ExplainsCross());
}

TEST_F(LimitEditorTest, LinesOfAbsentQuestionsChoicesAndRanksAreShownAndCanBeDeleted) {
    session.survey.QLimit(1, 1) = Line(kLimitAnd, 300, 1);
    const std::pair<LimitLine, QStringList> cases[] = {
        {Line(kLimitAnd, 200, 3), {u"質問201(3)"_s, u"質問201(3)"_s}},
        {Line(kLimitAnd, 511, 3, 2), {u"2位に質問512(3)"_s, u"2位に質問512(3)"_s}},
        {Line(kLimitAnd, 0, 90), {u"性別(90)"_s, u"性別(90)"_s}},
        {Line(kLimitAnd, 0, 1, 100), {u"100位に男"_s, u"100位に性別(1)男"_s}}};
    for (const auto& [line, words] : cases) {
        session.survey.PreLimit(1, 0) = line;
        LimitEditor editor(session);
        EXPECT_EQ((QStringList{editor.PreLimitRows()[0], editor.Rows()[1]}), words);
        EXPECT_EQ(editor.Questions().size(), 2);
        editor.SelectRow(1);
        EXPECT_EQ(editor.Chosen().question, 0);
        EXPECT_EQ(editor.Chosen().rank, 0);
        if (PositionChoice(line.b) == 90) {
            editor.AddLimitLine(kLimitAnd);
            EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"beep"_s}));
        }
        editor.DeleteLine();
        EXPECT_TRUE(SlotLines(0).empty());
    }
}

// The bits of changed slots become what each sample alone would get, those of other slots stay as they are.
TEST(LimitEditorClose, RefreshesTheBitsOfChangedSlotsOnly) {
    Random random(7);
    for (const qint32 samples : {0, 1, 49, 130, 4096, 9000}) {
        ScriptedInterface ui;
        SurveySession session(ui, QString());
        session.survey = MakeRandomSurvey(random, 30, samples);
        for (const int k : {2, 9, 15}) {
            const auto slot = session.survey.PreLimit.Column(k);
            std::ranges::copy(MakeRandomColumn(random, session.survey, 12), slot.begin());
        }
        SampleList expected = session.survey.Samples;
        LimitEditor editor(session);
        for (const int k : {2, 15}) {
            editor.SelectSlot(k);
            editor.SelectQuestion(0);
            editor.SelectChoice(0);
            editor.SelectRow(editor.Rows().size() > 2 ? 2 : 0);
            editor.AddLimitLine(kLimitAnd);
        }
        for (qint32 dno = 0; dno < samples; ++dno) {
            const qint16 before = expected.PreLimitBits(dno);
            RecalcPreLimitBits(session.survey, dno);
            const int changed = 0x8004;
            expected.SetPreLimitBits(
                dno, static_cast<qint16>((before & ~changed) | (session.survey.Samples.PreLimitBits(dno) & changed)));
            session.survey.Samples.SetPreLimitBits(dno, before);
        }
        session.ChangedOff();

        QStringList shown;
        editor.Close([&](const QString& figure) { shown += figure; });
        for (qint32 dno = 0; dno < samples; ++dno)
            ASSERT_EQ(session.survey.Samples.PreLimitBits(dno), expected.PreLimitBits(dno)) << "sample " << dno;
        EXPECT_TRUE(session.IsChanged());
        EXPECT_EQ(ui.transcript, (QStringList{u"busy on"_s, u"busy off"_s}));
        if (samples == 0) {
            EXPECT_EQ(shown, QStringList());
        } else if (samples == 1) {
            EXPECT_EQ(shown, (QStringList{u"19%"_s, u"100%"_s}));
        } else if (samples == 130) {
            EXPECT_EQ(shown, (QStringList{u"7%"_s, u"14%"_s, u"19%"_s, u"38%"_s, u"77%"_s, u"100%"_s}));
        }
    }
}

}  // namespace
}  // namespace quibra
