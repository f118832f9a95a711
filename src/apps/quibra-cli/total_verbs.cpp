// total and essays: results of a survey.
#include <QFile>

#include "apps/quibra-cli/result_text.h"
#include "apps/quibra-cli/verbs.h"
#include "conditions/condition_notation.h"
#include "tabulation/html_result.h"
#include "tabulation/total_json.h"
#include "tabulation/total_sheet.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Parts the two values of one option; no argument can hold it.
constexpr QChar kPairMark = QChar(0x1F);

// An option takes one value, so those of a range are joined to one: --number 10 20.
QStringList JoinPairs(const QStringList& arguments, const QStringList& options) {
    QStringList joined;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (!options.contains(arguments[i])) {
            joined += arguments[i];
            continue;
        }
        if (i + 2 >= arguments.size()) RefuseUsage(u"%1 には LOW と HIGH の二つの値が要ります"_s.arg(arguments[i]));
        joined += arguments[i] + u'=' + arguments[i + 1] + kPairMark + arguments[i + 2];
        i += 2;
    }
    return joined;
}

std::pair<QString, QString> PairOf(const VerbLine& line, const QString& option) {
    const QStringList parts = line.Value(option).split(kPairMark);
    if (parts.size() != 2) RefuseUsage(u"--%1 LOW HIGH のように二つの値を書いてください"_s.arg(option));
    return {parts[0], parts[1]};
}

double NumberArgument(const QString& text) {
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !qIsFinite(value)) RefuseUsage(u"「%1」は数ではありません"_s.arg(text));
    return value;
}

void SetCondition(const Survey& survey, const QString& text, TotalOption& option, int column) {
    LimitList list;
    NotationError error;
    if (!ParseCondition(survey, text, list, error)) RefuseUsage(NotationErrorText(text, error));
    for (int i = 0; i <= list.Bound(); ++i)
        option.Limits(i, column) = list[i];
}

QString FormatOf(const VerbLine& line) {
    QString format = line.Has(u"format"_s) ? line.Value(u"format"_s) : u"text"_s;
    if (!QStringList{u"text"_s, u"json"_s, u"csv"_s, u"html"_s}.contains(format))
        RefuseUsage(u"--format は text, json, csv, html のどれかです"_s);
    return format;
}

void AddResultOptions(VerbLine& line) {
    line.AddOption(u"format"_s, u"text（タブ区切り）、json、csv、html"_s, u"FORMAT"_s);
    line.AddSurveyOptions();
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
    QFile file(path);
    if (!file.exists()) throw Refusal{path + u"が見つかりません"_s};
    if (!file.open(QIODevice::ReadOnly)) throw Refusal{u"%1 を読めません。%2"_s.arg(path, file.errorString())};
    try {
        return ReadTotalOptionJson(file.readAll(), survey);
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
    const QString show = line.Has(u"show"_s) ? line.Value(u"show"_s) : u"both"_s;
    if (show == u"counts")
        view.percent = TotalView::CountsOnly;
    else if (show == u"percent")
        view.percent = TotalView::PercentOnly;
    else if (show != u"both")
        RefuseUsage(u"--show は counts, both, percent のどれかです"_s);
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
        const auto [low, high] = PairOf(line, u"number"_s);
        option.CrossMode = kEssayNumber;
        option.NumLow = NumberArgument(low);
        option.NumHigh = NumberArgument(high);
    }
    if (line.Has(u"code"_s)) {
        option.CrossMode = kEssayCode;
        std::tie(option.CodeLow, option.CodeHigh) = PairOf(line, u"code"_s);
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

void PrintResult(const Survey& survey, const TotalSheet& sheet, const QString& format, StandardOutput& out) {
    if (format == u"html")
        out.Print(WriteHtml(survey, sheet.result, sheet.view, sheet.grid));
    else if (format == u"csv")
        out.Print(GridAsCsv(sheet.grid));
    else if (format == u"text")
        out.Print(GridAsText(sheet.grid));
    else if (sheet.result.option.TotalKind == kEssayList)
        out.Print(WriteEssayJson(sheet.result));
    else
        out.Print(WriteTotalJson(survey, sheet.result));
}

}  // namespace

int RunTotal(const QStringList& arguments, StandardOutput& out) {
    VerbLine line(u"total"_s,
                  u"集計します。何も指定しなければ全質問の単純集計です。\n\n"_s
                  u"COND は条件で、語を空白で区切って並べます: Q3=2（必須） |Q3=4（又は） -Q5=1（除く）\n"_s
                  u"Q5=3..7（3から7） Q5@2=3（2位で3） P4（既成限定条件4）"_s);
    line.SetArguments(u"FILE"_s, 1, 1);
    line.AddOption(u"from"_s, u"最初の質問。--to がなければこの質問だけ"_s, u"Q"_s);
    line.AddOption(u"to"_s, u"最後の質問。--from がなければ先頭から"_s, u"Q"_s);
    line.AddOption(u"cross"_s, u"この質問の選択肢ごとの列でクロス集計する"_s, u"Q"_s);
    line.AddOption(u"predefined"_s, u"既成限定条件ごとの列でクロス集計する"_s);
    line.AddOption(u"column"_s, u"条件を1列にする。何度でも書ける"_s, u"COND"_s);
    line.AddOption(u"where"_s, u"全体の限定"_s, u"COND"_s);
    line.AddOption(u"rank"_s, u"N 番目の回答だけを数える"_s, u"N"_s);
    line.AddOption(u"rough"_s, u"荒く集計する"_s);
    line.AddOption(u"sort"_s, u"多い順に並べる"_s);
    line.AddOption(u"show"_s, u"counts（人数）、both（人数と％）、percent（％）"_s, u"WHAT"_s);
    line.AddOption(u"no-space"_s, u"列の間に空白を入れない"_s);
    line.AddOption(u"option"_s, u"集計の設定を JSON から読む"_s, u"FILE.json"_s);
    AddResultOptions(line);
    if (!line.Parse(arguments, out)) return kDone;
    line.AllowOneOf({u"cross"_s, u"predefined"_s, u"column"_s, u"option"_s});
    for (const QString& other : {u"from"_s, u"to"_s, u"where"_s, u"rank"_s, u"rough"_s})
        line.AllowOneOf({u"option"_s, other});
    const QString format = FormatOf(line);
    const TotalView view = TableView(line);

    OpenedSurvey opened(line, line.Arguments()[0], Access::Show);
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(opened.Data(), opened.Console(), monitor, widths);
    sheet.view = view;
    sheet.DoTotal(TableOption(line, opened.Data()));
    PrintResult(opened.Data(), sheet, format, out);
    return kDone;
}

int RunEssays(const QStringList& arguments, StandardOutput& out) {
    VerbLine line(u"essays"_s,
                  u"質問 Q の記述文・数量・コードを、回答1つを1行として一覧にします。"_s
                  u"COND の書き方は total --help にあります。"_s);
    line.SetArguments(u"FILE Q"_s, 2, 2);
    line.AddOption(u"choice"_s, u"この選択肢の回答だけ。なければ無回答以外の全て"_s, u"C"_s);
    line.AddOption(u"rank"_s, u"N 番目の回答だけ"_s, u"N"_s);
    line.AddOption(u"none"_s, u"回答を見ずに、条件に合うサンプルを1行ずつ"_s);
    line.AddOption(u"empty"_s, u"記述の無い回答"_s);
    line.AddOption(u"filled"_s, u"記述のある回答"_s);
    line.AddOption(u"text"_s, u"T を含む回答"_s, u"T"_s);
    line.AddOption(u"number"_s, u"数量が LOW から HIGH までの回答"_s, u"LOW HIGH"_s);
    line.AddOption(u"code"_s, u"コードが LOW から HIGH までの回答"_s, u"LOW HIGH"_s);
    line.AddOption(u"where"_s, u"全体の限定"_s, u"COND"_s);
    line.AddOption(u"ref"_s, u"この質問の回答を並べて示す。何度でも書ける"_s, u"Q"_s);
    line.AddOption(u"from-dno"_s, u"ローカル番号 N から始める"_s, u"N"_s);
    AddResultOptions(line);
    if (!line.Parse(JoinPairs(arguments, {u"--number"_s, u"--code"_s}), out)) return kDone;
    const QString format = FormatOf(line);

    OpenedSurvey opened(line, line.Arguments()[0], Access::Show);
    const Survey& survey = opened.Data();
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(survey, opened.Console(), monitor, widths);
    for (const QString& ref : line.Values(u"ref"_s))
        sheet.result.RefQno.push_back(QuestionArgument(survey, ref));
    sheet.result.FromDno = line.Number(u"from-dno"_s, 0, std::numeric_limits<qint32>::max(), 0);
    sheet.DoTotal(EssayOption(line, survey));
    PrintResult(survey, sheet, format, out);
    if (sheet.result.HasNext) ErrorLine(u"続きは --from-dno %1 で表示します。"_s.arg(sheet.result.FromDno));
    return kDone;
}

}  // namespace quibra
