#include "apps/quibra-cli/total_line.h"

#include <QIODevice>
#include <memory>

#include "apps/quibra-cli/console.h"
#include "conditions/condition_notation.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void SetQuestions(const VerbLine& line, const Survey& survey, TotalOption& option) {
    const bool from = line.Has(u"from"_s);
    const bool to = line.Has(u"to"_s);
    option.FromQno = static_cast<qint16>(from ? QuestionArgument(survey, line.Value(u"from"_s)) : 0);
    option.ToQno = static_cast<qint16>(to     ? QuestionArgument(survey, line.Value(u"to"_s))
                                       : from ? option.FromQno
                                              : survey.QuestionCount - 1);
    if (option.FromQno > option.ToQno) RefuseUsage(u"--from が --to より後です"_s);
}

void SetColumns(const VerbLine& line, const Survey& survey, const QStringList& columns, TotalOption& option) {
    if (line.Has(u"cross"_s)) {
        SetCrossQuestion(option, survey, QuestionArgument(survey, line.Value(u"cross"_s)));
    } else if (line.Has(u"predefined"_s)) {
        SetCrossPreLimit(option, survey);
    } else if (!columns.isEmpty()) {
        if (columns.size() > kMaxLimitColumns) RefuseUsage(u"--column は%1個までです"_s.arg(kMaxLimitColumns));
        option.CrossMode = kCrossFree;
        option.LimitCount = static_cast<qint16>(columns.size());
        for (int i = 0; i < option.LimitCount; ++i)
            SetCondition(survey, columns[i], option, i + 1);
    }
}

}  // namespace

QList<VerbOption> TableOptions() {
    return {{.name = u"from"_s,
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
            {.name = u"option"_s,
             .value = u"FILE.json"_s,
             .text = u"集計の設定を JSON から読む"_s,
             .english = u"Reads the choice of questions, columns and conditions from a file; goes with none of "
                        u"--from, --to, --cross, --predefined, --column, --where, --rank and --rough."_s}};
}

QList<VerbOption> TableViewOptions() {
    return {{.name = u"sort"_s,
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
             .english = u"Leaves no blank between columns."_s}};
}

void CheckTableOptions(const VerbLine& line, const QStringList& columns) {
    QStringList ways{u"cross"_s, u"predefined"_s, u"option"_s};
    if (!columns.isEmpty()) ways += u"column"_s;
    line.AllowOneOf(ways);
    for (const QString& other : {u"from"_s, u"to"_s, u"where"_s, u"rank"_s, u"rough"_s})
        line.AllowOneOf({u"option"_s, other});
}

void SetCondition(const Survey& survey, const QString& text, TotalOption& option, int column) {
    LimitList list;
    NotationError error;
    if (!ParseCondition(survey, text, list, error)) RefuseUsage(NotationErrorText(text, error));
    for (int i = 0; i <= list.Bound(); ++i)
        option.Limits(i, column) = list[i];
}

QByteArray OptionFileBytes(const QString& path) {
    return OpenInput(path)->readAll();
}

TotalOption OptionOfJson(const QByteArray& json, const QString& path, const Survey& survey) {
    try {
        return ReadTotalOptionJson(json, survey);
    } catch (const RuntimeError& error) {
        throw Refusal{u"%1：%2"_s.arg(path, error.Text())};
    }
}

TotalOption TableOption(const VerbLine& line, const Survey& survey, const QStringList& columns) {
    if (line.Has(u"option"_s)) {
        TotalOption option = OptionOfJson(OptionFileBytes(line.Value(u"option"_s)), line.Value(u"option"_s), survey);
        if (option.TotalKind != kTable) RefuseUsage(u"--option の TotalKind が表（1）ではありません"_s);
        return option;
    }
    TotalOption option;
    SetQuestions(line, survey, option);
    SetColumns(line, survey, columns, option);
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

void ConsoleMonitor::Started() {
    ProgressSpec spec;
    spec.title = u"集計中"_s;
    console_.ProgressOpen(spec);
}

void ConsoleMonitor::ShowPercent(qint32 done, qint32 of) {
    if (console_.IsProgressDue())
        console_.Progress(PassText(pass_.q, pass_.toQno, pass_.L, pass_.limitCount), of > 0 ? double(done) / of : 1);
}

}  // namespace quibra
