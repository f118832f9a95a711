// chart: one question of a total as a picture, or the figures that it shows.
#include <QFileInfo>
#include <QFont>
#include <QRegularExpression>
#include <algorithm>

#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/total_line.h"
#include "apps/quibra-cli/verbs.h"
#include "core/typed_number.h"
#include "tabulation/chart_data.h"
#include "tabulation/total_sheet.h"
#include "ui/chart/chart_files.h"
#include "ui/chart/japanese_font.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QStringList kKinds = {u"bar"_s,   u"pie"_s,    u"line"_s,   u"area"_s,  u"step"_s,
                            u"bar3d"_s, u"line3d"_s, u"area3d"_s, u"step3d"_s};
constexpr int kSmallestSide = 16;
constexpr int kLargestSide = 10000;

QSizeF SizeOf(const VerbLine& line) {
    if (!line.Has(u"size"_s)) return {960, 640};
    static const QRegularExpression kSize(u"^([0-9]{1,5})[xX]([0-9]{1,5})$"_s);
    const QRegularExpressionMatch size = kSize.match(NarrowFigures(line.Value(u"size"_s)));
    if (!size.hasMatch()) RefuseUsage(u"--size 960x640 のように幅と高さを書いてください"_s);
    const auto side = [&](int part) {
        return IntegerArgument(size.captured(part), u"--size"_s, kSmallestSide, kLargestSide);
    };
    return QSizeF(side(1), side(2));
}

// --column says both: a condition, as for a table, and the number of the column that is drawn.
bool IsColumnNumber(const QString& value) {
    return !value.isEmpty() && std::ranges::all_of(value, [](QChar digit) { return digit.isDigit(); });
}

QStringList Conditions(const VerbLine& line) {
    QStringList columns = line.Values(u"column"_s);
    columns.removeIf(IsColumnNumber);
    return columns;
}

int ColumnNumber(const VerbLine& line, int count) {
    const QStringList columns = line.Values(u"column"_s);
    const auto found = std::ranges::find_if(columns, IsColumnNumber);
    return found == columns.end() ? 1 : IntegerArgument(*found, u"--column"_s, 1, count);
}

// The table's options, of which --column is told with both its uses.
QList<VerbOption> ChartTableOptions() {
    QList<VerbOption> options = TableOptions();
    for (VerbOption& option : options) {
        if (option.name != u"column") continue;
        option.value = u"COND|L"_s;
        option.text = u"COND なら条件を1列にする。何度でも書ける。数なら、その番号の列を --one-column で描く"_s;
        option.english = u"A condition: one more column, as for total. A number: the column that --one-column draws."_s;
    }
    return options;
}

void CheckChartLine(const VerbLine& line) {
    CheckTableOptions(line, Conditions(line));
    if (!line.Has(u"question"_s)) RefuseUsage(u"--question Q がありません"_s);
    const bool json = line.Value(u"format"_s) == u"json";
    if (json && line.Arguments().size() > 1) RefuseUsage(u"--format json では OUT を書きません"_s);
    if (json) return;
    if (line.Arguments().size() < 2) RefuseUsage(u"OUT がありません。"_s + FindVerb(u"chart"_s)->Usage());
    const QString suffix = QFileInfo(line.Argument(1)).suffix().toLower();
    if (!QStringList{u"svg"_s, u"png"_s, u"pdf"_s}.contains(suffix))
        RefuseUsage(u"OUT の終わりは .svg、.png、.pdf のどれかです"_s);
}

// The row of choice 1 of the question, which is where a user would set the cursor.
int RowOfFirstChoice(const TotalResult& result, int q) {
    for (int row = result.RowStart[q]; row < result.RowStart[q + 1]; ++row)
        if (result.RowCode(0, row) == PackPosition(q, 1)) return row;
    throw Refusal{u"質問 Q%1 には選択肢がありません。"_s.arg(q + 1)};
}

int RunChart(const VerbLine& line, StandardOutput& out) {
    CheckChartLine(line);
    const QSizeF size = SizeOf(line);
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    const int q = QuestionArgument(survey, line.Value(u"question"_s));
    TotalOption option = TableOption(line, survey, Conditions(line));
    if (!line.Has(u"option"_s) && !line.Has(u"from"_s) && !line.Has(u"to"_s))
        option.FromQno = option.ToQno = static_cast<qint16>(q);
    if (q < option.FromQno || q > option.ToQno) RefuseUsage(u"--question の質問は集計の範囲にありません"_s);
    const int L = ColumnNumber(line, option.LimitCount) - 1;

    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(survey, opened.Console(), monitor, widths);
    sheet.view.sort = line.Has(u"sort"_s);
    sheet.DoTotal(option);
    if (q > sheet.result.option.ToQno) throw Refusal{u"質問 Q%1 は集計の行数に入りません。"_s.arg(q + 1)};
    ChartOrder order;
    order.percent = line.Value(u"values"_s) == u"percent";
    order.reverse = line.Has(u"reverse"_s);
    order.labelPercent = line.Has(u"label-percent"_s);
    order.oneColumn = line.Has(u"one-column"_s);
    LastChart last;
    const auto table = SendChart(survey, sheet.result, order, RowOfFirstChoice(sheet.result, q), L, last);
    if (!table) throw Refusal{u"グラフにする数がありません。"_s};
    if (line.Value(u"format"_s) == u"json") {
        out.Print(WriteChartJson(*table));
        return kDone;
    }
    ChartStyle style;
    style.Kind = static_cast<ChartKind>(kKinds.indexOf(line.Value(u"kind"_s)));
    style.Stacked = line.Has(u"stack"_s);
    WriteChartFile(line.Argument(1), {*table, style, JapaneseFont(QFont()), size});
    return kDone;
}

}  // namespace

Verb ChartVerb() {
    return {
        .name = u"chart"_s,
        .summary = u"質問のグラフを図にする"_s,
        .arguments = u"FILE [OUT]"_s,
        .text =
            u"集計した質問 Q のグラフを OUT（.svg、.png、.pdf）に描きます。集計の設定は total と同じで、"_s
            u"何も指定しなければ質問 Q の単純集計です。COND の書き方は total --help にあります。"_s,
        .english =
            u"Draws a question of a total as a picture, an SVG, PNG or PDF file. The total is described as for total; "
            u"without a description it is the simple total of the question."_s,
        .options =
            QList<VerbOption>{
                {.name = u"question"_s,
                 .value = u"Q"_s,
                 .text = u"グラフにする質問"_s,
                 .english = u"The question that is drawn."_s},
                {.name = u"kind"_s,
                 .value = u"KIND"_s,
                 .text = u"グラフの種類"_s,
                 .english = u"The kind of the chart."_s,
                 .choices = kKinds},
                {.name = u"stack"_s,
                 .value = {},
                 .text = u"条件ごとに選択肢を積み上げる"_s,
                 .english = u"Stacks the choices of each condition."_s},
                {.name = u"values"_s,
                 .value = u"WHAT"_s,
                 .text = u"percent（％）、count（人数）"_s,
                 .english = u"percent or count."_s,
                 .choices = {u"percent"_s, u"count"_s}},
                {.name = u"reverse"_s,
                 .value = {},
                 .text = u"選択肢を逆の順に並べる"_s,
                 .english = u"Puts the last choice first."_s},
                {.name = u"label-percent"_s,
                 .value = {},
                 .text = u"選択肢に、1列目の％を添える"_s,
                 .english = u"Adds the percentages of the first condition to the labels."_s},
                {.name = u"one-column"_s,
                 .value = {},
                 .text = u"一つの条件だけを描く"_s,
                 .english = u"Draws one condition only."_s},
                {.name = u"size"_s,
                 .value = u"WxH"_s,
                 .text = u"図の大きさ。なければ 960x640"_s,
                 .english = u"The size of the picture; otherwise 960x640."_s},
                {.name = u"sort"_s,
                 .value = {},
                 .text = u"多い順に並べる"_s,
                 .english = u"Puts the most frequent choices first."_s},
                {.name = u"format"_s,
                 .value = u"FORMAT"_s,
                 .text = u"picture（OUT に描く）、json（描く数を JSON で表示する。OUT は書かない）"_s,
                 .english = u"picture, into OUT; or json, the figures that would be drawn, without OUT."_s,
                 .choices = {u"picture"_s, u"json"_s}}} +
            ChartTableOptions() + SurveyOptions(),
        .run = RunChart,
        .draws = true};
}

}  // namespace quibra
