// What is done with a result that stands: texts counted and searched, charts, the way from a cell to its essays, paper,
// the clipboard.
#include <gtest/gtest.h>

#include <QXmlStreamReader>

#include "support/error_of.h"
#include "support/random_survey.h"
#include "tabulation/cell_essays.h"
#include "tabulation/chart_data.h"
#include "tabulation/clip_html.h"
#include "tabulation/essay_search.h"
#include "tabulation/print_table.h"
#include "tabulation/sheet_rig.h"
#include "tabulation/word_count.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QStringList CountsOf(const std::vector<QString>& texts) {
    QStringList lines;
    for (const WordCount& word : CountTexts(texts))
        lines << word.Text + u'=' + QString::number(word.Count);
    return lines;
}

TotalOption EssaysOf(const Survey& survey, int q) {
    TotalOption option;
    option.TotalKind = kEssayList;
    option.FromQno = option.ToQno = static_cast<qint16>(q);
    option.CrossQno = survey.Questions[q].ChoiceCount;
    option.CrossMode = kEssayAny;
    return option;
}

// The three columns of the tools, from the grid's first row on.
QStringList ToolColumns(const ResultGrid& grid) {
    QStringList rows;
    for (int row = 1; row < grid.Rows(); ++row) {
        const int first = grid.Columns() - 3;
        rows << u"%1|%2|%3"_s.arg(grid.Text(first, row), grid.Text(first + 1, row), grid.Text(first + 2, row));
    }
    while (!rows.isEmpty() && rows.back() == u"||")
        rows.removeLast();
    return rows;
}

struct FruitRig {
    FruitRig() : builder(FruitSurvey()), rig(builder.Get()), sheet(rig.sheet) {}

    const Survey& survey() { return builder.Get(); }
    void Cross(int from, int to, int cross) {
        TotalOption option = TableOf(from, to);
        SetCrossQuestion(option, survey(), cross);
        sheet.DoTotal(option);
    }

    SurveyBuilder builder;
    SheetRig rig;
    TotalSheet& sheet;
    LastChart last;
};

}  // namespace

TEST(WordCount, RanksAsTheExchangeSortLeavesThem) {
    EXPECT_EQ(CountsOf({u"a"_s, u"b"_s, u"b"_s, u""_s, u""_s, u"a"_s, u"b"_s}),
              QStringList({u"b=3"_s, u"a=2"_s, u"=2"_s}));
    EXPECT_EQ(CountsOf({u"a"_s, u"b"_s, u"c"_s, u"c"_s}), QStringList({u"c=2"_s, u"b=1"_s, u"a=1"_s}));
    // 64,998 bytes are taken; the two characters more are dropped, and so is every new text after them.
    const QString large(32499, u'x');
    EXPECT_EQ(CountsOf({large, u"yz"_s, u"yz"_s, u"a"_s, large}).size(), 1);
    EXPECT_EQ(CountsOf({QString(32498, u'x'), u"y"_s, u"z"_s, u"y"_s}),
              QStringList({u"y=2"_s, QString(32498, u'x') + u"=1"_s}));
    std::vector<QString> many;
    for (int i = 0; i < 10001; ++i)
        many.push_back(QString(QChar(0x4E00 + i)));
    EXPECT_EQ(ErrorOf([&] { CountTexts(many); }), kErrorSubscript);
    many.pop_back();
    EXPECT_EQ(CountTexts(many).size(), 10000U);
}

TEST(EssayTools, WriteTheirThreeColumnsEachOverTheLast) {
    FruitRig fruit;
    fruit.sheet.DoTotal(EssaysOf(fruit.survey(), 2));
    ResultGrid& grid = fruit.sheet.grid;
    const int columns = grid.Columns();
    ShowWordCount(grid, 2);
    EXPECT_EQ(ToolColumns(grid).mid(0, 4),
              QStringList({u"||"_s, u"順位|数|記述文"_s, u"1位|3|/記述なし/"_s, u"2位|1|Ab:青果"_s}));
    EXPECT_EQ(ToolColumns(grid).back(), u"||--- 以上10種類 ---"_s);
    EXPECT_EQ(grid.ColumnWidth(columns - 1), 5200);
    EXPECT_EQ(SearchWords(grid, {u"果"_s, u"畑"_s, u"青"_s}, 1), 4);
    EXPECT_EQ(ToolColumns(grid).mid(0, 8),
              QStringList({u"文字の検索||"_s, u"該当者|該当の記述文一覧|"_s, u"|Ab:青果|"_s, u"|ac:果物屋|"_s,
                           u"■■|畑で|"_s, u"■■|畑|"_s, u"■■|--- 計4人 ---|"_s, u"||"_s}));
    EXPECT_EQ(SearchNumbers(grid, 12, 3.5, 1), SearchNumbers(grid, 3.5, 12, 1));
    EXPECT_EQ(ToolColumns(grid).mid(0, 5), QStringList({u"数値の検索||"_s, u"該当者|該当の数値一覧|"_s, u"|12|"_s,
                                                        u"■■|3.5|"_s, u"|--- 計2人 ---|"_s}));
    EXPECT_EQ(grid.Columns(), columns);
    // Between the halves of two characters, as bytes have it.
    EXPECT_TRUE(HoldsBytes(QString(QChar(0x4142)) + QChar(0x4344), QString(QChar(0x4441))));
    EXPECT_FALSE(HoldsBytes(u"あい"_s, u"う"_s));
    grid.SetText(2, 4, u"1E999"_s);
    const QStringList before = ToolColumns(grid);
    EXPECT_EQ(ErrorOf([&] { SearchNumbers(grid, 0, 1, 1); }), kErrorOverflow);
    EXPECT_EQ(ToolColumns(grid), before);
}

TEST(SendChart, GivesTheQuestionOfTheCell) {
    FruitRig fruit;
    fruit.Cross(0, 1, 1);
    const TotalResult& result = fruit.sheet.result;
    const auto chart = [&](ChartOrder order, int row, int L = 0) {
        const auto table = SendChart(fruit.survey(), result, order, row, L, fruit.last);
        return table ? QString::fromUtf8(WriteChartJson(*table)).simplified().remove(u' ') : QString();
    };
    const QString cross =
        u"{\"Title\":\"どちらが好きですか\",\"Data\":[[\"\",\"りんご\",\"みかん\",\"無回答\"],"
        u"[\"男\",60,40,0],[\"女\",75,0,25],[\"無回答\",0,100,0]]}"_s;
    for (const int row : {1, 2, 3, 6, 7, 8})
        EXPECT_EQ(chart({}, row), QString()) << row;  // heads, 無回答, persons, blank
    EXPECT_EQ(chart({}, 5), cross);
    EXPECT_EQ(chart({}, 4), QString()) << "the same question is drawn already";
    EXPECT_TRUE(chart({}, 12).contains(u"性別は"_s));
    EXPECT_EQ(chart({}, 4), cross);
    fruit.last = {};
    EXPECT_EQ(chart({.percent = false, .reverse = true, .labelPercent = true}, 4),
              u"{\"Title\":\"どちらが好きですか\",\"Data\":[[\"\",\"無回答0%\",\"みかん40%\",\"りんご60%\"],"
              u"[\"男\",0,2,3],[\"女\",1,0,3],[\"無回答\",0,1,0]]}"_s);
    fruit.last = {};
    // Alone a column names itself, and a second choice is there though nobody gave it.
    EXPECT_EQ(chart({.oneColumn = true}, 4, 2),
              u"{\"Title\":\"どちらが好きですか[無回答]\",\"Data\":[[\"\",\"みかん\",\"無回答\"],"
              u"[\"無回答\",100,0]]}"_s);
    EXPECT_EQ(chart({.oneColumn = true}, 4, 2), QString());
    EXPECT_NE(chart({.oneColumn = true}, 4, 1), QString());
    EXPECT_EQ(ErrorOf([&] { chart({}, 400); }), kErrorSubscript);

    // A sorted table has another order in each column; the values stand under their choices all the same.
    fruit.sheet.view.sort = true;
    fruit.sheet.RunTotal();
    fruit.last = {};
    EXPECT_EQ(chart({}, 4), cross);
    TotalOption nobody = TableOf(0, 0);
    for (int line = 1; line <= 2; ++line)
        nobody.Limits(line, 1) = SurveyBuilder::Line(line == 1 ? 3 : 1, 0, line);
    nobody.Limits(2, 1) = SurveyBuilder::Line(3, 0, 2);
    fruit.sheet.DoTotal(nobody);
    fruit.last = {};
    EXPECT_EQ(ErrorOf([&] { chart({.labelPercent = true}, 4); }), kErrorOverflow);
    fruit.last = {};
    EXPECT_TRUE(chart({}, 4).contains(u",0,0]"_s));
}

TEST(CellEssays, StandUnderTheLimitsOfTheCell) {
    FruitRig fruit;
    TotalOption option = TableOf(0, 2, 1);
    SetCrossQuestion(option, fruit.survey(), 1);
    option.Limits(1, 0) = SurveyBuilder::Line(3, 0, 1);
    fruit.sheet.DoTotal(option);
    const int start = fruit.sheet.result.RowStart[2];
    struct Case {
        int row;
        int c;
        int mode;
    };
    for (const Case& wanted :
         {Case{start + 5, 3, kEssayAny}, Case{start, 5, kEssayFilled}, Case{start + 8, 5, kEssayFilled},
          Case{start + 7, 0, kEssayAny}, Case{start + 9, 5, kEssayFilled}}) {
        TotalOption essays;
        essays.EssayText = u"stays"_s;
        SetEssaysOfCell(fruit.survey(), fruit.sheet.result, wanted.row, 1, essays);
        EXPECT_EQ(essays.TotalKind, kEssayList);
        EXPECT_EQ(essays.FromQno, 2);
        EXPECT_EQ(essays.CrossQno, wanted.c) << wanted.row;
        EXPECT_EQ(essays.CrossMode, wanted.mode) << wanted.row;
        EXPECT_EQ(essays.Rank, 1);
        EXPECT_EQ(essays.EssayText, u"stays"_s);
        EXPECT_TRUE(essays.Limits(1, 0) == option.Limits(1, 0));
        EXPECT_TRUE(essays.Limits(2, 0) == option.Limits(1, 2));
        EXPECT_EQ(essays.Limits(3, 0).a, 0);
    }
    for (int line = 1; line < 16; ++line)
        option.Limits(line, 0) = SurveyBuilder::Line(3, 0, 1);
    fruit.sheet.DoTotal(option);
    TotalOption kept;
    EXPECT_EQ(ErrorOf([&] { SetEssaysOfCell(fruit.survey(), fruit.sheet.result, start, 0, kept); }), kErrorSubscript);
    EXPECT_EQ(kept.TotalKind, kTable);
}

// The table on the clipboard says what the text says, cell for cell.
TEST(ClipHtml, ReadsBackIntoTheCells) {
    Random random(4);
    for (int round = 0; round < 30; ++round) {
        Survey survey = MakeRandomSurvey(random, 4, 30);
        survey.Choices(1, 0).Text = u"<b> & \"引用\""_s;
        SheetRig rig(survey);
        TotalOption option = TableOf(0, survey.QuestionCount - 1);
        SetCrossQuestion(option, survey, 0);
        if (round % 3 == 2) option = EssaysOf(survey, Pick(random, 0, survey.QuestionCount - 1));
        rig.sheet.view.percent = static_cast<TotalView::Percent>(round % 3);
        rig.sheet.view.sort = Pick(random, 0, 1);
        rig.sheet.DoTotal(option);
        const ResultGrid& grid = rig.sheet.grid;
        const int right = grid.Columns() - 1, bottom = grid.Rows() - 1;
        const QString html = ClipHtml(rig.sheet, 0, 1, right, bottom);
        QXmlStreamReader reader(html.mid(html.indexOf(u"<table"_s)).remove(u"</body></html>"_s));
        QStringList rows, cells;
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"tr") cells.clear();
            if (reader.isEndElement() && reader.name() == u"tr") rows << cells.join(u'\t');
            if (!reader.isStartElement() || reader.name() != u"td") continue;
            const int span = std::max(1, reader.attributes().value("colspan"_L1).toInt());
            cells << reader.readElementText(QXmlStreamReader::IncludeChildElements);
            cells.resize(cells.size() + span - 1);
        }
        ASSERT_FALSE(reader.hasError()) << qUtf8Printable(reader.errorString());
        EXPECT_EQ(rows.join(u'\r'), grid.Dump(0, 1, right, bottom));
    }
}

TEST(PrintTable, HoldsEveryCellOnce) {
    FruitRig fruit;
    fruit.Cross(0, 1, 1);
    for (const bool sort : {false, true}) {
        fruit.sheet.view.sort = sort;
        fruit.sheet.RunTotal();
        const PrintTable table = MakePrintTable(fruit.survey(), fruit.sheet);
        ASSERT_EQ(table.Blocks.size(), 2U);
        const PrintBlock& block = table.Blocks[0];
        EXPECT_EQ(block.Rows.size(), 4U);  // two choices, 無回答, persons
        EXPECT_EQ(block.Rows[0].Cells[1].Text, u"3"_s);
        EXPECT_EQ(block.Rows[0].Cells[2].Text, u"60.0%"_s);
        for (const auto* rows : {&block.Heads, &block.Rows})
            for (const PrintRow& row : *rows) {
                size_t columns = 0;
                for (const PrintCell& cell : row.Cells)
                    columns += static_cast<size_t>(cell.Span);
                EXPECT_EQ(columns, block.Columns.size());
            }
        EXPECT_EQ(block.Columns.size(), sort ? 9U : 7U);
    }
    fruit.sheet.DoTotal(EssaysOf(fruit.survey(), 2));
    ShowWordCount(fruit.sheet.grid, 1);
    const PrintTable list = MakePrintTable(fruit.survey(), fruit.sheet);
    ASSERT_EQ(list.Blocks.size(), 1U);
    EXPECT_EQ(list.Blocks[0].Rows[0].Cells.back().Text, u"/記述なし/"_s);
    EXPECT_EQ(list.Blocks[0].Rows.back().Cells[0].Text, u"のべ12人"_s);
}

}  // namespace quibra
