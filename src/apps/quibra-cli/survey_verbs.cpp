// info, dump, build and convert: surveys as files.
#include <QFileInfo>
#include <QLocale>
#include <memory>

#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/verbs.h"
#include "core/binary_file.h"
#include "core/display_width.h"
#include "core/labels.h"
#include "core/survey_json.h"
#include "core/survey_losses.h"
#include "core/survey_reader.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString InfoLine(const QString& label, const QString& value) {
    constexpr int kLabelWidth = 18;
    return label + QString(kLabelWidth - DisplayWidth(label), u' ') + value + u'\n';
}

QString Grouped(qint64 number) {
    return QLocale(QLocale::Japanese).toString(number);
}

QString GenerationText(const QString& path) {
    BinaryFile file = BinaryFile::OpenToRead(path);
    ByteReader reader(file);
    switch (ReadMagic(reader)) {
        case kSurvey1001:
            return u"95年4,5月版 (1001)"_s;
        case kSurvey1002:
            return u"95年6,7,8月版 (1002)"_s;
        default:
            return u"95年9月版 (1003)"_s;
    }
}

QString LockText(qint16 level) {
    static const QStringList captions = {u"見るのも変えるのも自由"_s, u"見るだけ"_s, u"見ることもできない"_s};
    return u"%1 %2"_s.arg(level).arg(captions.value(level));
}

QString IDRangeText(const SampleList& samples) {
    if (samples.Count() == 0) return u"なし"_s;
    return u"%1～%2"_s.arg(samples.IDno(0)).arg(samples.IDno(samples.Count() - 1));
}

int WrittenPreLimits(const Survey& survey) {
    int count = 0;
    for (int slot = 0; slot < kPreLimitSlots; ++slot)
        if (survey.PreLimit(1, slot).a != 0) ++count;
    return count;
}

QString QuestionLines(const Survey& survey) {
    QString text;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const LabelParts parts = {.number = true, .name = true, .limit = false, .body = false, .answers = true};
        text += u"%1 （選択肢%2）\n"_s.arg(QuestionLabel(survey, q, parts).trimmed())
                    .arg(survey.Questions[q].ChoiceCount - 1);
    }
    return text;
}

int RunInfo(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Outside);
    const Survey& survey = opened.Data();
    QString text;
    if (opened.IsVisible()) {
        text += InfoLine(u"題名"_s, survey.Title);
        text += InfoLine(u"作成者"_s, survey.Editor);
    }
    text += InfoLine(u"ファイル"_s, opened.Name());
    text += InfoLine(u"ファイルの形式"_s, GenerationText(opened.Path()));
    text += InfoLine(u"ファイルの大きさ"_s, Grouped(QFileInfo(opened.Path()).size()) + u" バイト"_s);
    text += InfoLine(u"データ隠蔽"_s, LockText(survey.LockLevel));
    text += InfoLine(u"質問数"_s, Grouped(survey.QuestionCount));
    text += InfoLine(u"サンプル数"_s, Grouped(survey.SampleCount()));
    text += InfoLine(u"サンプルID"_s, IDRangeText(survey.Samples));
    text += InfoLine(u"1サンプル"_s, u"回答 %1 バイト、記述欄 %2"_s.arg(survey.SampleBytes).arg(survey.EssaySlots));
    if (opened.IsVisible()) {
        text += InfoLine(u"既成限定条件"_s, Grouped(WrittenPreLimits(survey)));
        text += u'\n' + QuestionLines(survey);
    }
    out.Print(text);
    return kDone;
}

int RunDump(const VerbLine& line, StandardOutput& out) {
    // The text holds the password and all answers.
    OpenedSurvey opened(line, line.Argument(0), Access::Change);
    WriteSurveyJson(opened.Data(), out, !line.Has(u"no-samples"_s));
    return kDone;
}

int RunBuild(const VerbLine& line, StandardOutput& out) {
    const QString source = line.Argument(0);
    const std::unique_ptr<QIODevice> file = OpenInput(source);
    ConsoleInterface console(line.Has(u"yes"_s));
    SurveySession session(console, ProgramDirectory());
    session.NewSurvey();
    try {
        ReadSurveyJson(*file, session.survey);
    } catch (const RuntimeError& error) {
        throw Refusal{u"%1：%2"_s.arg(source, error.Text())};
    }
    if (!AgreesToLosses(console, SurveyLosses(session.survey))) return kRefused;
    return SaveSurvey(session, line.Argument(1), out);
}

int RunConvert(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Write);
    return SaveSurvey(opened.Session(), line.Arguments().last(), out);
}

}  // namespace

Verb InfoVerb() {
    return {.name = u"info"_s,
            .summary = u"アンケートのあらましを表示する"_s,
            .arguments = u"FILE"_s,
            .text = u"アンケートの題名、質問、サンプル、鍵、大きさを表示します。"_s,
            .english =
                u"Shows title, file, lock, number of questions and samples, and the list of questions. Of "
                u"a survey that its lock hides, only what may be known from outside."_s,
            .options = SurveyOptions(),
            .run = RunInfo};
}

Verb DumpVerb() {
    return {
        .name = u"dump"_s,
        .summary = u"アンケートを JSON で書き出す"_s,
        .arguments = u"FILE"_s,
        .text = u"アンケートを JSON で標準出力に書き出します。"_s,
        .english = u"Writes the survey as JSON to standard output."_s,
        .options =
            QList<VerbOption>{
                {.name = u"no-samples"_s,
                 .value = {},
                 .text = u"質問などの定義だけを書き出す"_s,
                 .english = u"Without the samples: the questions, conditions and what else defines the survey."_s}} +
            SurveyOptions(),
        .run = RunDump};
}

Verb BuildVerb() {
    return {
        .name = u"build"_s,
        .summary = u"JSON からアンケートを作る"_s,
        .arguments = u"DEF.json OUT.qb"_s,
        .text =
            u"dump と同じ形の JSON からアンケートを作って保存します。DEF.json が - なら標準入力から読み、"_s
            u"OUT.qb が - なら標準出力に書きます。サンプルはなくても、順不同でもかまいません。"_s
            u"アンケートのファイルに書けない文字があれば、--yes がなければ保存しません。"_s,
        .english =
            u"Makes a survey of JSON in the form that dump writes; DEF.json may be -, standard input, and OUT.qb "
            u"standard output. Samples may be missing or stand in any order. Characters that no survey file can hold "
            u"are refused without --yes."_s,
        .options = QList<VerbOption>{YesOption()},
        .run = RunBuild};
}

Verb ConvertVerb() {
    return {.name = u"convert"_s,
            .summary = u"古い形式のアンケートを今の形式で保存する"_s,
            .arguments = u"IN [OUT]"_s,
            .text =
                u"どの版の形式のアンケートも読み込み、今の形式で保存します。"_s
                u"OUT を略すと IN に保存し、元のファイルは拡張子 qb~ で残ります。"_s
                u"IN が - なら標準入力から読み、OUT が - なら標準出力に書きます。"_s,
            .english =
                u"Reads a survey of any generation and saves it in the current one, as OUT or in its "
                u"place, where the file as it was stays with the suffix qb~. IN and OUT may be -, standard input "
                u"and output."_s,
            .options = SurveyOptions(),
            .run = RunConvert};
}

}  // namespace quibra
