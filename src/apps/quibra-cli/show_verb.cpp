// show: a sample in words.
#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/verbs.h"
#include "entry/sample_words.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

int RunShow(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    const qint32 dno = SampleArgument(survey, line.Argument(1));
    const int from = line.Number(u"from"_s, 1, survey.QuestionCount, 1);
    const int to = line.Number(u"to"_s, 1, survey.QuestionCount, survey.QuestionCount);
    out.Print(SampleWords(survey, dno, from - 1, to, line.Has(u"questions"_s)));
    return kDone;
}

}  // namespace

Verb ShowVerb() {
    return {
        .name = u"show"_s,
        .summary = u"サンプルの回答を言葉で表示する"_s,
        .arguments = u"FILE ID"_s,
        .text =
            u"サンプル ID の回答を、1行に1問ずつ選択肢の言葉で表示します。"_s
            u"限定に合わない質問は「(該当せず)」になります。"_s,
        .english =
            u"Prints a sample's answers in words, a question a line; a question that does not apply reads "
            u"(該当せず)."_s,
        .options =
            SurveyOptions() +
            QList<VerbOption>{
                {.name = u"from"_s,
                 .value = u"Q"_s,
                 .text = u"この質問から"_s,
                 .english = u"Begins with this question."_s},
                {.name = u"to"_s, .value = u"Q"_s, .text = u"この質問まで"_s, .english = u"Ends with this question."_s},
                {.name = u"questions"_s,
                 .value = {},
                 .text = u"質問文も表示する"_s,
                 .english = u"Prints the text of the questions, too."_s}},
        .run = RunShow};
}

}  // namespace quibra
