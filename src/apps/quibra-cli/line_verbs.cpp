// lines: where the lines of the answer sheet begin.
#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/verbs.h"
#include "entry/line_layout.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// "3.2": the second answer of question 3.
int AnswerRow(const Survey& survey, const LineLayout& layout, const QString& text) {
    const qsizetype point = text.indexOf(u'.');
    if (point < 0) RefuseUsage(u"「%1」は「質問番号.回答番号」ではありません"_s.arg(text));
    const int q = QuestionArgument(survey, text.left(point));
    const int a = IntegerArgument(text.mid(point + 1), u"Q%1 の回答番号"_s.arg(q + 1), 1, survey.Questions[q].Anum);
    return layout.RowOfAnswer(q, a - 1);
}

int LineRow(const LineLayout& layout, const QString& text) {
    const int last = layout.At(layout.RowCount() - 1).line + 1;
    return layout.RowOfLine(IntegerArgument(text, u"行番号"_s, 1, last) - 1);
}

void Break(const Survey& survey, LineLayout& layout, const QString& text) {
    const int row = AnswerRow(survey, layout, text);
    if (layout.Insert(row)) return;
    const bool begins = row > 0 && layout.At(row - 1).kind == LineLayout::Kind::Line;
    throw Refusal{begins ? u"%1 からはすでに行が始まっています"_s.arg(text) : u"行は255までです"_s};
}

void Edit(const VerbLine& line, Survey& survey) {
    LineLayout layout(survey);
    for (const QString& place : line.Values(u"break"_s))
        Break(survey, layout, place);
    for (const QString& number : line.Values(u"join"_s))
        if (!layout.Remove(LineRow(layout, number))) throw Refusal{u"第1行の改行はやめられません"_s};
    for (const QString& number : line.Values(u"call"_s))
        layout.SetFlag(LineRow(layout, number), true);
    for (const QString& number : line.Values(u"no-call"_s))
        layout.SetFlag(LineRow(layout, number), false);
    if (line.Has(u"library"_s)) survey.ExternDLL = line.Value(u"library"_s);
}

QString RowsText(Survey& survey) {
    const LineLayout layout(survey);
    QString text;
    for (int row = 0; row < layout.RowCount(); ++row)
        text += layout.Text(row).replace(u'\r', u' ') + u'\n';
    return text;
}

int RunLines(const VerbLine& line, StandardOutput& out) {
    const bool changes = line.Changes({u"break"_s, u"join"_s, u"call"_s, u"no-call"_s, u"library"_s});
    OpenedSurvey opened(line, line.Argument(0), changes ? Access::Write : Access::Show);
    if (changes) {
        Edit(line, opened.Data());
        opened.Session().ChangedOn();
        if (!SurveySave(opened.Session(), opened.Path())) return kRefused;
    }
    out.Print(RowsText(opened.Data()));
    return kDone;
}

}  // namespace

Verb LinesVerb() {
    return {
        .name = u"lines"_s,
        .summary = u"回答の改行位置を表示する・変える"_s,
        .arguments = u"FILE"_s,
        .text =
            u"回答と、そこから始まる回答票の行を表示します。変えるときは、次のオプションの順に変えて保存し、"_s
            u"変えた後を表示します。行は1から数えます。元のファイルは拡張子 qb~ で残ります。"_s,
        .english =
            u"Prints the answers and the lines of the answer sheet that begin at them. With options the lines are "
            u"changed first, in the order below, and the survey is saved. Lines count from 1. The survey as it "
            u"was stays beside it, with the suffix qb~."_s,
        .options =
            QList<VerbOption>{{.name = u"break"_s,
                               .value = u"Q.A"_s,
                               .text = u"質問 Q の A 番目の回答から行を始める"_s,
                               .english = u"Begin a line at answer A of question Q."_s,
                               .repeats = true},
                              {.name = u"join"_s,
                               .value = u"LINE"_s,
                               .text = u"この行を前の行につなぐ"_s,
                               .english = u"Join this line to the one before."_s,
                               .repeats = true},
                              {.name = u"call"_s,
                               .value = u"LINE"_s,
                               .text = u"入力がこの行まで進んだときに外部DLLを呼び出す"_s,
                               .english = u"Call the survey's own program when the typing has reached this line."_s,
                               .repeats = true},
                              {.name = u"no-call"_s,
                               .value = u"LINE"_s,
                               .text = u"この行で外部DLLを呼び出さない"_s,
                               .english = u"Call no program there."_s,
                               .repeats = true},
                              {.name = u"library"_s,
                               .value = u"NAME"_s,
                               .text = u"外部DLLのクラス・ライブラリ"_s,
                               .english = u"The program: a plug-in, or with a dot in its name a D-Bus service."_s}} +
            SurveyOptions(),
        .run = RunLines};
}

}  // namespace quibra
