#include "entry/line_layout.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

QStringList Rows(const LineLayout& layout) {
    QStringList rows;
    for (int row = 0; row < layout.RowCount(); ++row)
        rows += layout.Text(row);
    return rows;
}

// A question of one answer, one of three, and the table as the question editor lays it out.
Survey ThreeQuestions() {
    SurveyBuilder builder;
    builder.Question(u"性別"_s, u"あなたは"_s, 1, {u"男"_s, u"女"_s});
    builder.Question(u"趣味"_s, u"何を"_s, 3, {u"a"_s, u"b"_s, u"c"_s});
    Survey survey = builder.Get();
    for (int i = 0; i < 255; ++i)
        survey.LineStart[i] = PackPosition(i, 0);
    survey.LineStart[255] = survey.LineStart[256] = survey.LineStart[254];
    return survey;
}

TEST(LineLayout, LinesAreCutJoinedAndFlagged) {
    Survey survey = ThreeQuestions();
    LineLayout layout(survey);
    const QString plain = u"- - - - - - - - - - - - - -"_s;
    const QString flagged = u"▲DLL実行 - - - - - - - - -"_s;
    const QStringList before = {
        u"■第1行 "_s + plain,  u"Q1 性別あなたは"_s,  u"■第2行 "_s + plain, u"Q2 趣味[1/3]何を"_s,
        u"Q2 趣味[2/3]何を"_s, u"Q2 趣味[3/3]何を"_s, u"■第3行 "_s + plain, u"終わり"_s};
    EXPECT_EQ(Rows(layout), before);

    struct Deeds {
        bool insert, remove, flag;
    };
    const std::vector<Deeds> deeds = {{false, false, true}, {true, false, false}, {false, true, true},
                                      {true, false, false}, {true, false, false}, {true, false, false},
                                      {false, true, true},  {false, false, false}};
    for (int row = -1; row <= layout.RowCount(); ++row) {
        const bool there = row >= 0 && row < layout.RowCount();
        const Deeds expected = there ? deeds[static_cast<size_t>(row)] : Deeds{};
        EXPECT_TRUE(layout.CanInsert(row) == expected.insert && layout.CanRemove(row) == expected.remove &&
                    layout.CanFlag(row) == expected.flag)
            << row;
    }

    // A new line keeps the flag that stood at its place, and those behind move with theirs.
    layout.SetFlag(6, true);
    ASSERT_TRUE(layout.Insert(5));
    EXPECT_EQ(Rows(layout).mid(4), QStringList({u"Q2 趣味[2/3]何を"_s, u"■第3行 "_s + flagged, u"Q2 趣味[3/3]何を"_s,
                                                u"■第4行 "_s + flagged, u"終わり"_s}));
    EXPECT_EQ(survey.LineStart[2], PackPosition(1, 2));
    EXPECT_EQ(survey.LineStart[254], PackPosition(253, 0));
    EXPECT_EQ(survey.LineStart[255], PackPosition(253, 0));
    EXPECT_FALSE(layout.Insert(6)) << "a line begins there already";
    ASSERT_TRUE(layout.Remove(5));
    EXPECT_EQ(Rows(layout), before.mid(0, 6) + QStringList({u"■第3行 "_s + flagged, u"終わり"_s}));
    EXPECT_FALSE(layout.Remove(0));

    ASSERT_TRUE(layout.Remove(2));
    EXPECT_EQ(layout.RowOfAnswer(1, 0), 2);
    EXPECT_EQ(layout.RowOfAnswer(1, 3), -1);
    EXPECT_EQ(layout.RowOfLine(1), 5);
    EXPECT_TRUE(layout.IsFlagged(5));
    EXPECT_EQ(layout.RowOfLine(2), -1);
}

TEST(LineLayout, TableIsFullAt255Lines) {
    SurveyBuilder builder;
    for (int q = 0; q < 3; ++q)
        builder.Question(u"q"_s, u""_s, 120, QStringList(127, u"c"_s));
    Survey survey = builder.Get();
    LineLayout layout(survey);
    int lines = 1;
    for (int row = 2; row < layout.RowCount() - 2; row += 2, ++lines)
        if (!layout.Insert(row)) break;
    EXPECT_EQ(lines, 255);
    EXPECT_EQ(LineStartEnd(survey), 255);
    for (int i = 1; i < 255; ++i)
        EXPECT_LT(survey.LineStart[i - 1], survey.LineStart[i]);
    const auto before = survey.LineStart;
    EXPECT_FALSE(layout.Insert(layout.RowCount() - 3));
    for (int i = 0; i < kLineStartEntries; ++i)
        EXPECT_EQ(survey.LineStart[i], before[i]);
}

}  // namespace
}  // namespace quibra
