#include "support/survey_bytes.h"

#include <QFile>
#include <algorithm>

#include "core/survey_reader.h"
#include "core/survey_writer.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Makes a survey new where reading one has written. The tables of a survey are large, and clearing them whole would be
// nearly all that a fuzzer's run costs.
void ClearWhatWasRead(Survey& survey) {
    for (int q = 0; q < kMaxQuestions; ++q) {
        for (int c = 0; c < std::min<int>(survey.Questions[q].ChoiceCount, kMaxChoices); ++c)
            survey.Choices(c, q) = ChoiceRec();
        std::ranges::fill(survey.QLimit.Column(q), LimitLine());
        survey.Questions[q] = QuestionRec();
    }
    survey.PreLimit = {};
    survey.LineFlag.Fill(false);
    NewSurveyHead(survey, u"/"_s);
}

// Into a survey that is new.
bool ReadBytes(QByteArrayView bytes, Survey& survey) {
    ByteReader in(bytes);
    const int code = ReadMagic(in);
    if (code < kSurvey1001 || code > kSurvey1003) return false;
    SurveyReader reader(in, code, survey);
    reader.ReadTitleAndPassword();
    reader.ReadLockLevelAndEditor();
    reader.ReadDefinition();
    reader.ReadSamples([](const QString&, double) { return true; });
    reader.ReadTail();
    return true;
}

}  // namespace

bool ReadSurveyBytes(QByteArrayView bytes, Survey& survey) {
    NewSurveyHead(survey, u"/"_s);
    NewSurveyBody(survey);
    return ReadBytes(bytes, survey);
}

QByteArray WriteSurveyBytes(const Survey& survey) {
    QByteArray bytes;
    ByteWriter out(bytes);
    WriteMagic(out, kSurvey1003);
    WriteSurvey(out, survey, nullptr, [](const QString&, double) { return true; });
    out.Flush();
    return bytes;
}

QString RoundTripFault(QByteArrayView bytes) {
    static Survey survey;
    QByteArray written;
    try {
        ClearWhatWasRead(survey);
        if (!ReadBytes(bytes, survey)) return QString();
        written = WriteSurveyBytes(survey);
    } catch (const RuntimeError&) {
        return QString();
    }
    try {
        ClearWhatWasRead(survey);
        if (!ReadBytes(written, survey)) return u"what was written is no survey"_s;
        if (WriteSurveyBytes(survey) != written) return u"what was written reads as another survey"_s;
    } catch (const RuntimeError& error) {
        return u"what was written is refused: "_s + error.Text();
    }
    return QString();
}

QString TestDataPath(const QString& name) {
    return QStringLiteral(QUIBRA_SOURCE_DIR) + u"/tests/data/"_s + name;
}

QByteArray TestData(const QString& name) {
    return FileBytes(TestDataPath(name));
}

QByteArray FileBytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

void WriteFileBytes(const QString& path, QByteArrayView bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), bytes.size()) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

}  // namespace quibra
