// info, dump, build and convert: surveys as files.
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include "apps/quibra-cli/verbs.h"
#include "core/binary_file.h"
#include "core/labels.h"
#include "core/survey_json.h"
#include "core/survey_reader.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Columns that a text takes on a terminal: two a character, one for ASCII and half-width kana.
int DisplayWidth(const QString& text) {
    int width = 0;
    for (const QChar character : text)
        width +=
            character.unicode() < 0x1100 || (character.unicode() >= 0xFF61 && character.unicode() <= 0xFF9F) ? 1 : 2;
    return width;
}

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

}  // namespace

int RunInfo(const QStringList& arguments, StandardOutput& out) {
    VerbLine line(u"info"_s, u"アンケートの題名、質問、サンプル、鍵、大きさを表示します。"_s);
    line.SetArguments(u"FILE"_s, 1, 1);
    line.AddSurveyOptions();
    if (!line.Parse(arguments, out)) return kDone;

    OpenedSurvey opened(line, line.Arguments()[0], Access::Outside);
    const Survey& survey = opened.Data();
    QString text;
    if (opened.IsVisible()) {
        text += InfoLine(u"題名"_s, survey.Title);
        text += InfoLine(u"作成者"_s, survey.Editor);
    }
    text += InfoLine(u"ファイル"_s, opened.Path());
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

int RunDump(const QStringList& arguments, StandardOutput& out) {
    VerbLine line(u"dump"_s, u"アンケートを JSON で標準出力に書き出します。"_s);
    line.SetArguments(u"FILE"_s, 1, 1);
    line.AddOption(u"no-samples"_s, u"質問などの定義だけを書き出す"_s);
    line.AddSurveyOptions();
    if (!line.Parse(arguments, out)) return kDone;

    // The text holds the password and all answers.
    OpenedSurvey opened(line, line.Arguments()[0], Access::Change);
    WriteSurveyJson(opened.Data(), out, !line.Has(u"no-samples"_s));
    return kDone;
}

int RunBuild(const QStringList& arguments, StandardOutput& out) {
    VerbLine line(u"build"_s,
                  u"dump と同じ形の JSON からアンケートを作って保存します。"_s
                  u"サンプルはなくても、順不同でもかまいません。"_s);
    line.SetArguments(u"DEF.json OUT.qb"_s, 2, 2);
    if (!line.Parse(arguments, out)) return kDone;

    const QString source = line.Arguments()[0];
    QFile file(source);
    if (!file.exists()) throw Refusal{source + u"が見つかりません"_s};
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Refusal{u"%1 を読めません。%2"_s.arg(source, file.errorString())};
    ConsoleInterface console(false);
    SurveySession session(console, ProgramDirectory());
    session.NewSurvey();
    try {
        ReadSurveyJson(file, session.survey);
    } catch (const RuntimeError& error) {
        throw Refusal{u"%1：%2"_s.arg(source, error.Text())};
    }
    return SurveySave(session, QFileInfo(line.Arguments()[1]).absoluteFilePath()) ? kDone : kRefused;
}

int RunConvert(const QStringList& arguments, StandardOutput& out) {
    VerbLine line(u"convert"_s,
                  u"どの版の形式のアンケートも読み込み、今の形式で保存します。"_s
                  u"OUT を略すと IN に保存し、元のファイルは拡張子 qb~ で残ります。"_s);
    line.SetArguments(u"IN [OUT]"_s, 1, 2);
    line.AddSurveyOptions();
    if (!line.Parse(arguments, out)) return kDone;

    OpenedSurvey opened(line, line.Arguments()[0], Access::Change);
    const QString target = QFileInfo(line.Arguments().last()).absoluteFilePath();
    return SurveySave(opened.Session(), target) ? kDone : kRefused;
}

}  // namespace quibra
