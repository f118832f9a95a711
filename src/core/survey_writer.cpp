#include "core/survey_writer.h"

#include <QtEndian>

#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kQuestionReports = 100;
constexpr int kSampleReports = 50;

constexpr qint16 kHighestSlot = kPreLimitSlots - 1;
constexpr qint16 kFieldsBehindSamples = 3;

QString OfTotal(qint32 number, qint32 total) {
    return QString::number(number) + u'/' + QString::number(total);
}

// The closing line is written as it stands, whatever its `b`.
void WriteLines(ByteWriter& out, std::span<const LimitLine, 16> lines) {
    qint64 line = 0;
    do {
        CheckSubscript(++line, static_cast<qint64>(lines.size()));
        out.Int16(lines[line].a);
        out.Int16(lines[line].b);
    } while (lines[line].a != 0);
}

void WriteQuestion(ByteWriter& out, const Survey& survey, int q) {
    const QuestionRec& question = survey.Questions[q];
    WriteDoubleLen(out, question.Text);
    WriteLines(out, survey.QLimit.Column(q));
    out.Int16(question.Anum);
    out.Int16(question.LabelKind);
    out.Int16(question.ChoiceCount);
    for (int c = 1; c < question.ChoiceCount; ++c) {
        WriteDoubleLen(out, ChoiceToFile(survey, q, c));
        out.Int16(survey.Choices(c, q).Status);
    }
}

// Once for each of perhaps millions of samples: see the reader.
void WriteSample(ByteWriter& out, const Survey& survey, qint32 dno) {
    const int answerBytes = survey.SampleBytes;
    const SampleList& samples = survey.Samples;
    const int countAt = kSampleAnswersAt + answerBytes;
    unsigned char* bytes = out.Add(static_cast<size_t>(countAt + kSampleCountBytes));
    qToLittleEndian(samples.IDs()[dno], bytes);
    qToLittleEndian(samples.Flags()[dno], bytes + kSampleFlagsAt);
    if (answerBytes > 0) qToLittleEndian<qint16>(samples.Packed(dno), answerBytes / 2, bytes + kSampleAnswersAt);
    const EssayList& essays = samples.Essays(dno);
    qToLittleEndian(CheckedInt16(static_cast<qint64>(essays.size())), bytes + countAt);
    for (const auto& essay : essays) {
        out.Int16(essay.slot);
        WriteDoubleLen(out, essay.text);
    }
}

bool WriteSamples(ByteWriter& out, const Survey& survey, const std::vector<qint32>* selection,
                  const ProgressReport& report) {
    const qint32 total = survey.SampleCount();
    const auto reported = [&](qint32 dno) {
        return report(u"回答 "_s + OfTotal(dno + 1, total), static_cast<double>(dno + 1) / total);
    };
    Q_ASSERT(survey.SampleBytes == survey.Samples.SampleBytes());
    if (selection) {
        out.Int32(CheckedInt32(static_cast<qint64>(selection->size())));
        for (const qint32 dno : *selection) {
            CheckSubscript(dno, total);
            if (IsReportStep(dno, total, kSampleReports) && !reported(dno)) return false;
            WriteSample(out, survey, dno);
        }
        return true;
    }
    out.Int32(total);
    const qint32 interval = ReportInterval(total, kSampleReports);
    for (qint32 dno = 0; dno < total;) {
        const qint32 next = std::min(dno / interval * interval + interval - 1, total - 1);
        while (dno < next)
            WriteSample(out, survey, dno++);
        if (!reported(dno)) return false;
        WriteSample(out, survey, dno++);
    }
    return true;
}

}  // namespace

bool WriteMagic(ByteWriter& out, int code) {
    out.Int16(0);
    if (code != kSurvey1003 && code != kPageFile) return false;
    WriteMirrorStr(out, MagicOf(code));
    return true;
}

bool WriteSurvey(ByteWriter& out, const Survey& survey, const std::vector<qint32>* selection,
                 const ProgressReport& report) {
    WriteDoubleLen(out, survey.Title);
    WriteSquareStr(out, survey.Password);
    out.Int16(survey.LockLevel);
    WriteDoubleLen(out, survey.Editor);

    const int questions = survey.QuestionCount;
    out.Int16(survey.QuestionCount);
    for (int q = 0; q < questions; ++q) {
        WriteQuestion(out, survey, q);
        if (IsReportStep(q, questions, kQuestionReports) && !report(u"質問など "_s + OfTotal(q + 1, questions), 0))
            return false;
    }

    out.Int16(kHighestSlot);
    for (int slot = 0; slot < kPreLimitSlots; ++slot)
        WriteLines(out, survey.PreLimit.Column(slot));
    const int lineEnd = LineStartEnd(survey);
    for (int entry = 0; entry <= lineEnd; ++entry)
        out.Int16(survey.LineStart[entry]);
    out.Int16(survey.CorrectFlags);

    if (!WriteSamples(out, survey, selection, report)) return false;

    out.Int16(kFieldsBehindSamples);
    WriteDoubleLen(out, survey.DistName);
    out.Int16(survey.DistQno);
    out.Int16(survey.EssayFull);
    for (int entry = 0; entry < lineEnd - 1; ++entry)
        out.Int16(survey.LineFlag[entry] ? kLineFlagOn : kLineFlagOff);
    out.Int16(kLineFlagEnd);
    WriteDoubleLen(out, survey.ExternDLL);
    return true;
}

}  // namespace quibra
