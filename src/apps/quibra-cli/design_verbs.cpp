// list, questions, properties, measure and new: the questionnaire as text, and what is said of a survey as a whole.
#include <QFileInfo>

#include "apps/quibra-cli/json_lines.h"
#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/recorded_interface.h"
#include "apps/quibra-cli/verbs.h"
#include "core/code_page.h"
#include "core/whole_file.h"
#include "design/new_survey_steps.h"
#include "design/question_listing.h"
#include "design/survey_properties.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

int RunList(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    const int first = line.Has(u"from"_s) ? QuestionArgument(survey, line.Value(u"from"_s)) : 0;
    const int last = line.Has(u"to"_s) ? QuestionArgument(survey, line.Value(u"to"_s)) : survey.QuestionCount - 1;
    QString text = QuestionsListing(survey, first, last);
    if (line.Arguments().size() > 1)
        WriteWholeFile(line.Argument(1), EncodeCodePage(text));
    else
        out.Print(text.replace(u"\r\n"_s, u"\n"_s));
    return kDone;
}

int RunQuestions(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const QByteArray bytes = EncodeCodePage(QuestionText(opened.Data()));
    if (line.Arguments().size() > 1)
        WriteWholeFile(line.Argument(1), bytes);
    else
        out.Print(bytes);
    return kDone;
}

int RunProperties(const VerbLine& line, StandardOutput& out) {
    const bool changes = line.Changes({u"title"_s, u"editor"_s, u"flags"_s});
    OpenedSurvey opened(line, line.Argument(0), changes ? Access::Write : Access::Show);
    Survey& survey = opened.Data();
    if (line.Has(u"quota"_s)) {
        const QStringList ends = line.Value(u"quota"_s).split(u',');
        if (ends.size() != 2) RefuseUsage(u"--quota は「A,B」の形で指定します"_s);
        if (!SetQuota(survey, opened.Console(), ends[0], ends[1])) return kRefused;
    }
    if (changes) {
        constexpr int kAllFlags = 31;
        SetTitleAndEditor(opened.Session(), line.Has(u"title"_s) ? line.Value(u"title"_s) : survey.Title,
                          line.Has(u"editor"_s) ? line.Value(u"editor"_s) : survey.Editor);
        survey.CorrectFlags = static_cast<qint16>(line.Number(u"flags"_s, 0, kAllFlags, survey.CorrectFlags));
        if (!SurveySave(opened.Session(), opened.Path())) return kRefused;
    }
    PrintJson(out, {{"Title", Utf8(survey.Title)},
                    {"Editor", Utf8(survey.Editor)},
                    {"FileName", Utf8(survey.FileName)},
                    {"SampleRecBytes", survey.SampleRecBytes},
                    {"SampleCount", survey.SampleCount()},
                    {"QuotaFirst", survey.QuotaFirst},
                    {"QuotaLast", survey.QuotaLast},
                    {"QuotaUsed", survey.QuotaUsed},
                    {"CorrectFlags", survey.CorrectFlags}});
    return kDone;
}

int RunMeasure(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    MeasureRun run(opened.Data(), opened.Console(), [](const MeasureRun&) {});
    run.Run();
    const TypingFigures& figures = run.Figures();
    PrintJson(out, {{"Answer", figures.answers},
                    {"Essay", figures.characters},
                    {"DiffiSym", {figures.dotted, figures.letters, figures.kana}}});
    return kDone;
}

int RunNew(const VerbLine& line, StandardOutput& /*out*/) {
    const QString target = QFileInfo(line.Argument(0)).absoluteFilePath();
    const auto save = [&](SurveySession& session) {
        SetTitleAndEditor(session, line.Has(u"title"_s) ? line.Value(u"title"_s) : session.survey.Title,
                          line.Has(u"editor"_s) ? line.Value(u"editor"_s) : session.survey.Editor);
        return SurveySave(session, target) ? kDone : kRefused;
    };
    if (line.Has(u"from"_s)) {
        OpenedSurvey base(line, line.Value(u"from"_s), Access::Show);
        ClearForNewSurvey(base.Session());
        return save(base.Session());
    }
    ConsoleInterface console(line.Has(u"yes"_s));
    SurveySession session(console, ProgramDirectory());
    session.NewSurvey();
    return save(session);
}

}  // namespace

Verb ListVerb() {
    return {.name = u"list"_s,
            .summary = u"質問と選択肢の一覧を書き出す"_s,
            .arguments = u"FILE [OUT]"_s,
            .text =
                u"質問と選択肢を人が読む形で書き出します。"_s
                u"OUT にはシフトJIS、CR LF で、OUT を略すと標準出力に UTF-8 で書きます。"_s,
            .english =
                u"Writes the questions and their choices for people to read: to OUT in code page 932 with CR LF, or to "
                u"standard output in UTF-8."_s,
            .options =
                QList<VerbOption>{
                    {.name = u"from"_s, .value = u"Q"_s, .text = u"最初の質問"_s, .english = u"The first question."_s},
                    {.name = u"to"_s, .value = u"Q"_s, .text = u"最後の質問"_s, .english = u"The last question."_s}} +
                SurveyOptions(),
            .run = RunList};
}

Verb QuestionsVerb() {
    return {
        .name = u"questions"_s,
        .summary = u"質問・選択肢データを書き出す"_s,
        .arguments = u"FILE [OUT]"_s,
        .text = u"ほかのプログラムのための質問・選択肢データを、シフトJIS、CR LF で OUT か標準出力に書き出します。"_s,
        .english =
            u"Writes the question text file for other programs, in code page 932 with CR LF, to OUT or to standard "
            u"output."_s,
        .options = SurveyOptions(),
        .run = RunQuestions};
}

Verb PropertiesVerb() {
    return {
        .name = u"properties"_s,
        .summary = u"タイトルや割り当てIDを見る、変える"_s,
        .arguments = u"FILE"_s,
        .text =
            u"アンケートの題名、作成者などを JSON で表示します。題名、作成者、回答補正は変えて保存できます。"_s
            u"ID の割り当てはアンケートではなくコンピュータのもので、保存されません。"_s,
        .english =
            u"Shows title, editor and more as JSON. Title, editor and correction flags can be set, and are saved. The "
            u"range of IDs belongs to the computer, not to the survey, and isn't saved."_s,
        .options =
            QList<VerbOption>{
                {.name = u"title"_s, .value = u"T"_s, .text = u"題名を変える"_s, .english = u"Sets the title."_s},
                {.name = u"editor"_s, .value = u"T"_s, .text = u"作成者を変える"_s, .english = u"Sets the editor."_s},
                {.name = u"quota"_s,
                 .value = u"A,B"_s,
                 .text = u"ID の割り当てを A から B とした時の値を表示する"_s,
                 .english = u"Shows what IDs are used of those from A to B."_s},
                {.name = u"flags"_s,
                 .value = u"N"_s,
                 .text = u"回答補正を変える（0から31まで）"_s,
                 .english = u"Sets the correction flags, 0 to 31."_s}} +
            SurveyOptions(),
        .run = RunProperties};
}

Verb MeasureVerb() {
    return {
        .name = u"measure"_s,
        .summary = u"入力の手間を計る"_s,
        .arguments = u"FILE"_s,
        .text =
            u"全サンプルの入力手間数を JSON で表示します。"_s
            u"Answer は記号回答の総数、Essay は記述回答の総文字数、DiffiSym は2桁以上、英文字、カタカナの記号の数です。"_s,
        .english =
            u"Shows as JSON what it has cost to type all samples: Answer is the number of answers, Essay that of "
            u"characters in texts, DiffiSym how many symbols have two digits, are letters, and are kana."_s,
        .options = SurveyOptions(),
        .run = RunMeasure};
}

Verb NewVerb() {
    return {
        .name = u"new"_s,
        .summary = u"新しいアンケートを作る"_s,
        .arguments = u"FILE"_s,
        .text =
            u"白紙の新しいアンケートを FILE に作ります。"_s
            u"--from を付けると、すでにあるアンケートから回答データを消したものになります。"_s,
        .english = u"Makes a new survey: a blank one, or with --from another survey's questions without its samples."_s,
        .options =
            QList<VerbOption>{{.name = u"title"_s, .value = u"T"_s, .text = u"題名"_s, .english = u"The title."_s},
                              {.name = u"editor"_s, .value = u"T"_s, .text = u"作成者"_s, .english = u"The editor."_s},
                              {.name = u"from"_s,
                               .value = u"OTHER"_s,
                               .text = u"元になるアンケート"_s,
                               .english = u"The survey whose questions are taken over."_s}} +
            SurveyOptions(),
        .run = RunNew};
}

}  // namespace quibra
