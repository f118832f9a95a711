// total and essays: results of a survey.
#include <QIODevice>
#include <memory>

#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/result_text.h"
#include "apps/quibra-cli/verbs.h"
#include "conditions/condition_notation.h"
#include "tabulation/html_result.h"
#include "tabulation/total_json.h"
#include "tabulation/total_sheet.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void SetCondition(const Survey& survey, const QString& text, TotalOption& option, int column) {
    LimitList list;
    NotationError error;
    if (!ParseCondition(survey, text, list, error)) RefuseUsage(NotationErrorText(text, error));
    for (int i = 0; i <= list.Bound(); ++i)
        option.Limits(i, column) = list[i];
}

QList<VerbOption> ResultOptions() {
    return QList<VerbOption>{
               {.name = u"format"_s,
                .value = u"FORMAT"_s,
                .text = u"text（タブ区切り。指定しないときと同じ）、json、csv、html（コードページ932）"_s,
                .english = u"text (cells parted by tabs, as without this option), json, csv or html. All are in "
                           u"UTF-8, but html in code page 932."_s,
                .choices = {u"text"_s, u"json"_s, u"csv"_s, u"html"_s}},
               {.name = u"bom"_s,
                .value = {},
                .text = u"csv の先頭に UTF-8 の印を付ける（表計算ソフトのため）"_s,
                .english = u"Begins csv with the mark of UTF-8, for spreadsheets."_s}} +
           SurveyOptions();
}

// Shows how far a count is on the console's progress line.
class ConsoleMonitor : public TotalMonitor {
  public:
    explicit ConsoleMonitor(ConsoleInterface& console) : console_(console) {}

    void Started() override {
        ProgressSpec spec;
        spec.title = u"集計中"_s;
        console_.ProgressOpen(spec);
    }
    void ShowPass(int q, int toQno, int L, int limitCount) override { pass_ = {q, toQno, L, limitCount}; }
    void ShowPercent(qint32 done, qint32 of) override {
        if (console_.IsProgressDue())
            console_.Progress(PassText(pass_.q, pass_.toQno, pass_.L, pass_.limitCount),
                              of > 0 ? double(done) / of : 1);
    }
    void Finished() override { console_.ProgressClose(); }

  private:
    struct Pass {
        int q = 0;
        int toQno = 0;
        int L = 0;
        int limitCount = 0;
    };

    ConsoleInterface& console_;
    Pass pass_;
};

TotalOption OptionFromFile(const QString& path, const Survey& survey) {
    const std::unique_ptr<QIODevice> file = OpenInput(path);
    try {
        return ReadTotalOptionJson(file->readAll(), survey);
    } catch (const RuntimeError& error) {
        throw Refusal{u"%1：%2"_s.arg(path, error.Text())};
    }
}

void SetQuestions(const VerbLine& line, const Survey& survey, TotalOption& option) {
    const bool from = line.Has(u"from"_s);
    const bool to = line.Has(u"to"_s);
    option.FromQno = static_cast<qint16>(from ? QuestionArgument(survey, line.Value(u"from"_s)) : 0);
    option.ToQno = static_cast<qint16>(to     ? QuestionArgument(survey, line.Value(u"to"_s))
                                       : from ? option.FromQno
                                              : survey.QuestionCount - 1);
    if (option.FromQno > option.ToQno) RefuseUsage(u"--from が --to より後です"_s);
}

void SetColumns(const VerbLine& line, const Survey& survey, TotalOption& option) {
    if (line.Has(u"cross"_s)) {
        SetCrossQuestion(option, survey, QuestionArgument(survey, line.Value(u"cross"_s)));
    } else if (line.Has(u"predefined"_s)) {
        SetCrossPreLimit(option, survey);
    } else if (line.Has(u"column"_s)) {
        const QStringList columns = line.Values(u"column"_s);
        if (columns.size() > kMaxLimitColumns) RefuseUsage(u"--column は%1個までです"_s.arg(kMaxLimitColumns));
        option.CrossMode = kCrossFree;
        option.LimitCount = static_cast<qint16>(columns.size());
        for (int i = 0; i < option.LimitCount; ++i)
            SetCondition(survey, columns[i], option, i + 1);
    }
}

TotalOption TableOption(const VerbLine& line, const Survey& survey) {
    if (line.Has(u"option"_s)) {
        TotalOption option = OptionFromFile(line.Value(u"option"_s), survey);
        if (option.TotalKind != kTable) RefuseUsage(u"--option の TotalKind が表（1）ではありません"_s);
        return option;
    }
    TotalOption option;
    SetQuestions(line, survey, option);
    SetColumns(line, survey, option);
    if (line.Has(u"where"_s)) SetCondition(survey, line.Value(u"where"_s), option, 0);
    option.Rank = static_cast<qint16>(line.Number(u"rank"_s, 0, kMaxAnswers, 0));
    option.Rough = line.Has(u"rough"_s);
    return option;
}

TotalView TableView(const VerbLine& line) {
    TotalView view;
    const QString show = line.Value(u"show"_s);
    if (show == u"counts") view.percent = TotalView::CountsOnly;
    if (show == u"percent") view.percent = TotalView::PercentOnly;
    view.sort = line.Has(u"sort"_s);
    view.space = !line.Has(u"no-space"_s);
    return view;
}

void SetEssayCondition(const VerbLine& line, TotalOption& option) {
    line.AllowOneOf({u"none"_s, u"empty"_s, u"filled"_s, u"text"_s, u"number"_s, u"code"_s});
    option.CrossMode = kEssayAny;
    if (line.Has(u"none"_s)) option.CrossMode = kEssayNoCondition;
    if (line.Has(u"empty"_s)) option.CrossMode = kEssayEmpty;
    if (line.Has(u"filled"_s)) option.CrossMode = kEssayFilled;
    if (line.Has(u"text"_s)) {
        option.CrossMode = kEssayHolds;
        option.EssayText = line.Value(u"text"_s);
    }
    if (line.Has(u"number"_s)) {
        const auto [first, second] = line.Pair(u"number"_s);
        option.CrossMode = kEssayNumber;
        std::tie(option.NumLow, option.NumHigh) = std::minmax({NumberArgument(first), NumberArgument(second)});
    }
    if (line.Has(u"code"_s)) {
        option.CrossMode = kEssayCode;
        const auto [first, second] = line.Pair(u"code"_s);
        std::tie(option.CodeLow, option.CodeHigh) = std::minmax({first, second});
    }
}

TotalOption EssayOption(const VerbLine& line, const Survey& survey) {
    TotalOption option;
    option.TotalKind = kEssayList;
    option.FromQno = option.ToQno = static_cast<qint16>(QuestionArgument(survey, line.Arguments()[1]));
    const qint16 choiceCount = survey.Questions[option.FromQno].ChoiceCount;
    option.CrossQno = static_cast<qint16>(line.Number(u"choice"_s, 0, choiceCount - 1, choiceCount));
    option.Rank = static_cast<qint16>(line.Number(u"rank"_s, 0, kMaxAnswers, 0));
    if (line.Has(u"where"_s)) SetCondition(survey, line.Value(u"where"_s), option, 0);
    SetEssayCondition(line, option);
    return option;
}

void CheckBom(const VerbLine& line) {
    if (line.Has(u"bom"_s) && line.Value(u"format"_s) != u"csv") RefuseUsage(u"--bom は --format csv と使います"_s);
}

void PrintResult(const Survey& survey, const TotalSheet& sheet, const VerbLine& line, StandardOutput& out) {
    const QString format = line.Value(u"format"_s);
    if (format == u"html")
        out.Print(WriteHtml(survey, sheet.result, sheet.view, sheet.grid));
    else if (format == u"csv")
        out.Print((line.Has(u"bom"_s) ? QByteArray("\xEF\xBB\xBF") : QByteArray()) + GridAsCsv(sheet.grid));
    else if (format == u"text")
        out.Print(GridAsText(sheet.grid));
    else if (sheet.result.option.TotalKind == kEssayList)
        out.Print(WriteEssayJson(sheet.result));
    else
        out.Print(WriteTotalJson(survey, sheet.result));
}

int RunTotal(const VerbLine& line, StandardOutput& out) {
    line.AllowOneOf({u"cross"_s, u"predefined"_s, u"column"_s, u"option"_s});
    for (const QString& other : {u"from"_s, u"to"_s, u"where"_s, u"rank"_s, u"rough"_s})
        line.AllowOneOf({u"option"_s, other});
    CheckBom(line);
    const TotalView view = TableView(line);

    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(opened.Data(), opened.Console(), monitor, widths);
    sheet.view = view;
    sheet.DoTotal(TableOption(line, opened.Data()));
    PrintResult(opened.Data(), sheet, line, out);
    return kDone;
}

int RunEssays(const VerbLine& line, StandardOutput& out) {
    CheckBom(line);
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(survey, opened.Console(), monitor, widths);
    for (const QString& ref : line.Values(u"ref"_s))
        sheet.result.RefQno.push_back(QuestionArgument(survey, ref));
    sheet.result.FromDno = line.Number(u"from-dno"_s, 0, std::numeric_limits<qint32>::max(), 0);
    sheet.DoTotal(EssayOption(line, survey));
    PrintResult(survey, sheet, line, out);
    if (sheet.result.HasNext) ErrorLine(u"続きは --from-dno %1 で表示します。"_s.arg(sheet.result.FromDno));
    return kDone;
}

}  // namespace

Verb TotalVerb() {
    return {.name = u"total"_s,
            .summary = u"集計する（単純集計・クロス集計）"_s,
            .arguments = u"FILE"_s,
            .text =
                u"集計します。何も指定しなければ全質問の単純集計です。\n\n"_s
                u"COND は条件で、語を空白で区切って並べます: Q3=2（必須） |Q3=4（又は） -Q5=1（除く）\n"_s
                u"Q5=3..7（3から7） Q5@2=3（2位で3） P4（既成限定条件4）"_s,
            .english = u"Makes a table. Without options these are simple totals of all questions."_s,
            .options =
                QList<VerbOption>{
                    {.name = u"from"_s,
                     .value = u"Q"_s,
                     .text = u"最初の質問。--to がなければこの質問だけ"_s,
                     .english = u"The first question; without --to the only one."_s},
                    {.name = u"to"_s,
                     .value = u"Q"_s,
                     .text = u"最後の質問。--from がなければ先頭から"_s,
                     .english = u"The last question; without --from the table begins with the first one."_s},
                    {.name = u"cross"_s,
                     .value = u"Q"_s,
                     .text = u"この質問の選択肢ごとの列でクロス集計する"_s,
                     .english = u"Crosses by the choices of this question, one column each."_s},
                    {.name = u"predefined"_s,
                     .value = {},
                     .text = u"既成限定条件ごとの列でクロス集計する"_s,
                     .english = u"Crosses by the predefined conditions of the survey."_s},
                    {.name = u"column"_s,
                     .value = u"COND"_s,
                     .text = u"条件を1列にする。何度でも書ける"_s,
                     .english = u"One more column of those who meet a condition; may be given many times."_s,
                     .repeats = true},
                    {.name = u"where"_s,
                     .value = u"COND"_s,
                     .text = u"全体の限定"_s,
                     .english = u"Counts only those who meet this condition."_s},
                    {.name = u"rank"_s,
                     .value = u"N"_s,
                     .text = u"N 番目の回答だけを数える"_s,
                     .english = u"Counts only the answer in place N."_s},
                    {.name = u"rough"_s,
                     .value = {},
                     .text = u"荒く集計する"_s,
                     .english = u"Counts roughly, from about 200 of the samples."_s},
                    {.name = u"sort"_s,
                     .value = {},
                     .text = u"多い順に並べる"_s,
                     .english = u"Puts the most frequent choices first."_s},
                    {.name = u"show"_s,
                     .value = u"WHAT"_s,
                     .text = u"counts（人数）、both（人数と％）、percent（％）"_s,
                     .english = u"counts, both (counts and percentages, as without this option) or percent."_s,
                     .choices = {u"both"_s, u"counts"_s, u"percent"_s}},
                    {.name = u"no-space"_s,
                     .value = {},
                     .text = u"列の間に空白を入れない"_s,
                     .english = u"Leaves no blank between columns."_s},
                    {.name = u"option"_s,
                     .value = u"FILE.json"_s,
                     .text = u"集計の設定を JSON から読む"_s,
                     .english = u"Reads the choice of questions, columns and conditions from a file; goes with none of "
                                u"--from, --to, --cross, --predefined, --column, --where, --rank and --rough."_s}} +
                ResultOptions(),
            .run = RunTotal};
}

Verb EssaysVerb() {
    return {.name = u"essays"_s,
            .summary = u"記述文を一覧にする"_s,
            .arguments = u"FILE Q"_s,
            .text =
                u"質問 Q の記述文・数量・コードを、回答1つを1行として一覧にします。"_s
                u"COND の書き方は total --help にあります。"_s,
            .english =
                u"Lists the texts, numbers or codes that were written beside the choices of a question, "
                u"one answer a line."_s,
            .options =
                QList<VerbOption>{
                    {.name = u"choice"_s,
                     .value = u"C"_s,
                     .text = u"この選択肢の回答だけ。なければ無回答以外の全て"_s,
                     .english = u"Only answers with this choice; otherwise all but \"no answer\"."_s},
                    {.name = u"rank"_s,
                     .value = u"N"_s,
                     .text = u"N 番目の回答だけ"_s,
                     .english = u"Only the answer in place N."_s},
                    {.name = u"none"_s,
                     .value = {},
                     .text = u"回答を見ずに、条件に合うサンプルを1行ずつ"_s,
                     .english = u"One line for each sample that meets the condition, whatever was answered."_s},
                    {.name = u"empty"_s,
                     .value = {},
                     .text = u"記述の無い回答"_s,
                     .english = u"Only answers with nothing written."_s},
                    {.name = u"filled"_s,
                     .value = {},
                     .text = u"記述のある回答"_s,
                     .english = u"Only answers with something written."_s},
                    {.name = u"text"_s,
                     .value = u"T"_s,
                     .text = u"T を含む回答"_s,
                     .english = u"Only answers that hold this text."_s},
                    {.name = u"number"_s,
                     .value = u"LOW HIGH"_s,
                     .text = u"数量が LOW から HIGH までの回答"_s,
                     .english = u"Only answers with a number in this range."_s},
                    {.name = u"code"_s,
                     .value = u"LOW HIGH"_s,
                     .text = u"コードが LOW から HIGH までの回答"_s,
                     .english = u"Only answers with a code in this range."_s},
                    {.name = u"where"_s,
                     .value = u"COND"_s,
                     .text = u"全体の限定"_s,
                     .english = u"Only samples that meet this condition."_s},
                    {.name = u"ref"_s,
                     .value = u"Q"_s,
                     .text = u"この質問の回答を並べて示す。何度でも書ける"_s,
                     .english = u"Shows the answers to this question beside; may be given many times."_s,
                     .repeats = true},
                    {.name = u"from-dno"_s,
                     .value = u"N"_s,
                     .text = u"ローカル番号 N から始める"_s,
                     .english = u"Goes on at sample number N, as a long list tells at its end."_s}} +
                ResultOptions(),
            .run = RunEssays};
}

}  // namespace quibra
