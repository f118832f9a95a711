#include "core/survey_reader.h"

#include <QtEndian>
#include <array>

#include "core/answer_store.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kReports = 100;

// Fields that may follow the samples.
constexpr int kHasDistName = 1;
constexpr int kHasDistQno = 2;
constexpr int kHasEssayFull = 3;

constexpr qint16 kFixedChoiceStatus = 1 << kExclusive;

constexpr int kSurveyKinds[] = {kSurvey1001, kSurvey1002, kSurvey1003, kPageFile};

}  // namespace

int ReadMagic(ByteReader& in) {
    try {
        in.Int16();
        const QString magic = ReadMirrorStr(in);
        for (const int code : kSurveyKinds)
            if (magic == MagicOf(code)) return code;
    } catch (const RuntimeError& error) {
        if (error.Number() != kErrorPastEnd) throw;
    }
    return kNothing;
}

bool SurveyReader::AtOldest() const {
    return code_ == kSurvey1001;
}

int SurveyReader::ShortestSample() const {
    return kSampleAnswersAt + survey_.SampleBytes + (AtOldest() ? 0 : kSampleCountBytes);
}

QString SurveyReader::ReadText() {
    return AtOldest() ? ReadMirrorStr(in_) : ReadDoubleLen(in_);
}

void SurveyReader::ReadTitleAndPassword() {
    survey_.Title = ReadText();
    survey_.Password = ReadSquareStr(in_);
}

void SurveyReader::ReadLockLevelAndEditor() {
    survey_.LockLevel = in_.Int16();
    survey_.Editor = ReadText();
}

void SurveyReader::ReadDefinition() {
    survey_.QuestionCount = in_.Int16();
    CheckSubscript(survey_.QuestionCount, kMaxQuestions + 1);
    for (int q = 0; q < survey_.QuestionCount; ++q)
        ReadQuestion(q);
    RecalcLayout(survey_);
    survey_.Samples.SetLayout(survey_.SampleBytes, survey_.EssaySlots);

    in_.Int16();  // the highest slot, always 15
    for (int slot = 0; slot < kPreLimitSlots; ++slot)
        ReadLines(survey_.PreLimit.Column(slot));
    ReadLineStart();
    survey_.CorrectFlags = in_.Int16();
}

// Lines 1, 2, ... up to and with the closing one.
void SurveyReader::ReadLines(std::span<LimitLine, 16> lines) {
    qint64 line = 0;
    do {
        CheckSubscript(++line, static_cast<qint64>(lines.size()));
        lines[line].a = in_.Int16();
        lines[line].b = in_.Int16();
    } while (lines[line].a != 0);
}

void SurveyReader::ReadQuestion(int q) {
    QuestionRec& question = survey_.Questions[q];
    question.SetText(ReadText());
    ReadLines(survey_.QLimit.Column(q));
    question.Anum = in_.Int16();
    question.LabelKind = in_.Int16();
    question.ChoiceCount = in_.Int16();
    survey_.Choices(0, q).Text = u"無回答"_s;
    survey_.Choices(0, q).Status = kFixedChoiceStatus;
    for (int c = 1; c < question.ChoiceCount; ++c) {
        survey_.Choices(c, q) = ChoiceRec();
        SetChoiceFromFile(survey_, q, c, ReadText());
        survey_.Choices(c, q).Status = in_.Int16();
    }
}

// Entries up to and with the first that equals its predecessor, which then fills the rest. The oldest files hold plain
// question numbers.
void SurveyReader::ReadLineStart() {
    int entry = -1;
    qint16 before, value = 0;
    do {
        before = value;
        value = in_.Int16();
        survey_.LineStart[++entry] = AtOldest() ? PackPosition(value, 0) : value;
    } while (entry == 0 || value != before);
    const qint16 last = survey_.LineStart[entry];
    while (++entry < kLineStartEntries)
        survey_.LineStart[entry] = last;
}

bool SurveyReader::ReadSamples(const ProgressReport& report) {
    const qint32 count = in_.Int32();
    if (count <= 0) return true;
    if (qint64{count} * ShortestSample() > in_.Remaining()) throw RuntimeError(kErrorPastEnd);
    survey_.Samples.Allocate(count);
    survey_.QuotaUsed = survey_.QuotaFirst;

    const QString total = QString::number(count);
    const qint32 interval = ReportInterval(count, kReports);
    for (qint32 dno = 0; dno < count;) {
        const qint32 next = std::min(dno / interval * interval + interval - 1, count - 1);
        while (dno < next)
            ReadSample(dno++);
        if (!report(u"回答 "_s + QString::number(dno + 1) + u'/' + total, static_cast<double>(dno + 1) / count))
            return false;
        ReadSample(dno++);
    }
    return true;
}

// Once for each of perhaps millions of samples: one look at what remains, and for one without texts nothing but copies.
void SurveyReader::ReadSample(qint32 dno) {
    const int answerBytes = survey_.SampleBytes;
    const unsigned char* bytes = in_.Take(static_cast<size_t>(ShortestSample()));
    SampleList& samples = survey_.Samples;
    samples.IDs()[dno] = qFromLittleEndian<qint32>(bytes);
    samples.Flags()[dno] = qFromLittleEndian<qint16>(bytes + kSampleFlagsAt);
    if (answerBytes > 0) qFromLittleEndian<qint16>(bytes + kSampleAnswersAt, answerBytes / 2, samples.Packed(dno));
    if (AtOldest()) return ReadEssays1001(dno);
    const qint16 essays = qFromLittleEndian<qint16>(bytes + kSampleAnswersAt + answerBytes);
    if (essays > 0) ReadEssays(dno, essays);
}

// The slots of the answers that bear a text, in the order of questions and answers.
std::vector<qint16> SurveyReader::SlotsOfAnswers(qint32 dno) const {
    std::vector<qint16> slots;
    std::array<qint16, kMaxAnswers> choices;
    for (int q = 0; q < survey_.QuestionCount; ++q) {
        const int first = survey_.QIdx[q].EssayStart;
        if (survey_.QIdx[q + 1].EssayStart == first) continue;
        qint16 count = 0;
        GetAnswers(survey_, dno, q, count, choices.data());
        for (int i = 0; i < count; ++i)
            if (survey_.Choices(choices[i], q).Has(kEssay)) slots.push_back(static_cast<qint16>(first + i));
    }
    return slots;
}

void SurveyReader::ReadEssays1001(qint32 dno) {
    if (survey_.EssaySlots == 0) return;
    for (const qint16 slot : SlotsOfAnswers(dno))
        survey_.Samples.SetEssay(dno, slot, ReadMirrorStr(in_));
}

void SurveyReader::ReadEssays(qint32 dno, int count) {
    if (code_ == kSurvey1003) {
        for (int i = 0; i < count; ++i) {
            const qint16 slot = in_.Int16();
            survey_.Samples.SetEssay(dno, slot, ReadText());
        }
        return;
    }
    // Here the j-th text-bearing answer of a question has its text in the question's j-th slot, wherever among the
    // answers it stands. A slot beyond them is taken as it is, and gives way to a text that belongs to an answer.
    EssayList stored;
    for (int i = 0; i < count; ++i) {
        const qint16 slot = in_.Int16();
        stored.push_back({slot, ReadText()});
    }
    std::vector<qint16> slotOf(static_cast<size_t>(survey_.EssaySlots) + 1, -1);
    int question = 0;
    int next = 0;
    for (const qint16 slot : SlotsOfAnswers(dno)) {
        while (survey_.QIdx[question + 1].EssayStart <= slot)
            next = survey_.QIdx[++question].EssayStart;
        slotOf[next++] = slot;
    }
    for (const bool moving : {false, true})
        for (const auto& [slot, text] : stored) {
            CheckSubscript(slot, survey_.EssaySlots + 1);
            const qint16 answerSlot = slotOf[slot];
            if (moving == (answerSlot >= 0)) survey_.Samples.SetEssay(dno, moving ? answerSlot : slot, text);
        }
}

void SurveyReader::ReadTail() {
    if (!in_.AtEnd()) {
        const qint16 fields = in_.Int16();
        if (fields >= kHasDistName) survey_.DistName = ReadText();
        if (fields >= kHasDistQno) survey_.DistQno = in_.Int16();
        if (fields >= kHasEssayFull) survey_.EssayFull = in_.Int16();
    }
    if (!in_.AtEnd()) {
        int entry = 0;
        for (qint16 flag; (flag = in_.Int16()) != kLineFlagEnd; ++entry)
            if (flag == kLineFlagOn || flag == kLineFlagOff) survey_.LineFlag[entry] = flag == kLineFlagOn;
    }
    survey_.ExternDLL = in_.AtEnd() ? QString() : ReadText();
}

}  // namespace quibra
