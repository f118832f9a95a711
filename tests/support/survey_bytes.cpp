#include "support/survey_bytes.h"

#include <QFile>
#include <algorithm>

#include "core/survey_reader.h"
#include "core/survey_writer.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

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

void MakeNewAgain(Survey& survey) {
    static const Survey fresh = [] {
        Survey made;
        NewSurveyHead(made, u"/"_s);
        NewSurveyBody(made);
        return made;
    }();
    for (int q = 0; q < std::clamp<int>(survey.QuestionCount, 1, kMaxQuestions); ++q) {
        for (int c = 0; c < std::clamp<int>(survey.Questions[q].ChoiceCount, 2, kMaxChoices); ++c)
            survey.Choices(c, q) = fresh.Choices(c, q);
        std::ranges::copy(fresh.QLimit.Column(q), survey.QLimit.Column(q).begin());
        survey.Questions[q] = fresh.Questions[q];
    }
    survey.Title = fresh.Title;
    survey.Editor = fresh.Editor;
    survey.QuestionCount = fresh.QuestionCount;
    survey.CorrectFlags = fresh.CorrectFlags;
    survey.PreLimit = fresh.PreLimit;
    survey.LineStart = fresh.LineStart;
    survey.LineFlag = fresh.LineFlag;
    NewSurveyHead(survey, u"/"_s);
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
}

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
        MakeNewAgain(survey);
        if (!ReadBytes(bytes, survey)) return QString();
        written = WriteSurveyBytes(survey);
    } catch (const RuntimeError&) {
        return QString();
    }
    try {
        MakeNewAgain(survey);
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
