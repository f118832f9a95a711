#include "core/sample_change.h"

#include <pwd.h>
#include <unistd.h>

#include <QSet>
#include <QSysInfo>
#include <algorithm>
#include <cstring>
#include <new>

#include "companion/answer_bits.h"
#include "core/answer_store.h"
#include "core/varint.h"

namespace quibra {

namespace {

QString NameOfUser() {
    const passwd* user = getpwuid(geteuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : QString::number(geteuid());
}

void Trim(StoredAnswers& answers) {
    while (!answers.empty() && answers.back().Cno == 0 && answers.back().Essay.isEmpty())
        answers.pop_back();
}

// What question q holds in a sample, field by field: also what damaged files hold behind an empty field.
void ReadStored(const Survey& survey, int q, const unsigned char* packed, const EssayList& essays,
                StoredAnswers& answers) {
    const AnswerLayoutRec& layout = survey.QIdx[q];
    const auto* bits = reinterpret_cast<const qint16*>(packed);
    answers.clear();
    for (int i = 0; i < layout.Anum; ++i)
        answers.push_back(
            {static_cast<qint16>(ReadField(bits, layout.BitStart + i * layout.BitWidth, layout.BitWidth)), {}});
    const int slotsEnd = std::min<int>(survey.QIdx[q + 1].EssayStart, layout.EssayStart + layout.Anum);
    for (const Essay& essay : essays)
        if (essay.slot >= layout.EssayStart && essay.slot < slotsEnd)
            answers[static_cast<size_t>(essay.slot - layout.EssayStart)].Essay = essay.text;
    Trim(answers);
}

void ReadGiven(const AnswerLists& lists, int start, int count, StoredAnswers& answers) {
    answers.clear();
    for (int i = start; i < start + count; ++i)
        answers.push_back({lists.Ano[i], lists.Essays[i]});
    Trim(answers);
}

bool SameEssays(const EssayList& one, const EssayList& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const Essay& a, const Essay& b) { return a.slot == b.slot && a.text == b.text; });
}

bool IsIdentity(const Renumbering& map) {
    const auto counts = [](const std::vector<qint16>& list) {
        qint16 next = 0;
        return std::all_of(list.begin(), list.end(), [&next](qint16 number) { return number == next++; });
    };
    return counts(map.QuestionMap) && std::all_of(map.ChoiceMap.begin(), map.ChoiceMap.end(), counts);
}

void AppendToKey(QByteArray& key, const StoredAnswers& answers) {
    AppendNumber(key, static_cast<qint64>(answers.size()));
    for (const StoredAnswer& answer : answers) {
        AppendNumber(key, answer.Cno);
        AppendNumber(key, answer.Essay.size());
        key.append(reinterpret_cast<const char*>(answer.Essay.constData()), answer.Essay.size() * 2);
    }
}

}  // namespace

// Makes the records of one change. Its buffers are used over and over: no sample takes memory of its own.
class SampleChangeLog::Recorder {
  public:
    Recorder(SampleChangeLog& log, ChangeCause cause) : log_(log), survey_(log.survey_) { record_.Cause = cause; }

    // The look at one sample, from before its change on.
    void Watch(qint32 dno);
    void WatchNew(qint32 dno, qint32 id);  // REQUIRES: no other one is looked at
    void SetGone() { isThere_ = false; }
    void SetMoved(qint32 dno, qint32 id) {
        dno_ = dno;
        id_ = id;
    }
    void EndWatch();

    void BeginRewrite(const Renumbering& map, int questionsAfter);
    void Rewritten(SampleName name, const AnswerLists& before, const AnswerLists& after);

    // Hands the record on, unless it is empty, and begins the next one of the same batch.
    void FinishRecord();

  private:
    bool CompareAnswers(SampleName name);
    bool Follows(int source, const AnswerLists& before, int old, const AnswerLists& after, int start, int count) const;
    void NoteAnswers(int from, int to, SampleName name);

    SampleChangeLog& log_;
    const Survey& survey_;
    SampleChangeRecord record_;
    QHash<QByteArray, size_t> places_;  // in record_.Answers, by what became what
    QSet<SampleName> seen_;             // samples that are in the record

    // The sample under change as it was, all zero for one that was not there, and where it is now.
    bool watching_ = false;
    bool wasThere_ = false;
    bool isThere_ = false;
    SampleName before_;
    std::vector<unsigned char> packed_;
    EssayList essays_;
    qint32 dno_ = 0;
    qint32 id_ = 0;

    Renumbering map_;
    std::vector<int> sources_;  // by new question: the old one, -1 for none
    std::vector<int> starts_;   // by old question: its first answer in the sample at hand

    QByteArray key_;
    StoredAnswers answersBefore_;
    StoredAnswers answersAfter_;
};

void SampleChangeLog::Recorder::Watch(qint32 dno) {
    const SampleList& samples = survey_.Samples;
    const qint32 id = samples.IDno(dno);
    if (watching_ && isThere_ && dno_ == dno && id_ == id) return;
    EndWatch();
    before_ = log_.NameOf(id);
    if (seen_.contains(before_)) FinishRecord();
    wasThere_ = isThere_ = true;
    SetMoved(dno, id);
    packed_.assign(samples.Packed(dno), samples.Packed(dno) + samples.SampleBytes());
    essays_ = samples.Essays(dno);
    watching_ = true;
}

void SampleChangeLog::Recorder::WatchNew(qint32 dno, qint32 id) {
    before_ = log_.NameOf(id);
    wasThere_ = false;
    isThere_ = true;
    SetMoved(dno, id);
    packed_.assign(static_cast<size_t>(survey_.Samples.SampleBytes()), 0);
    essays_.clear();
    watching_ = true;
}

void SampleChangeLog::Recorder::EndWatch() {
    if (!watching_) return;
    watching_ = false;
    // Added and deleted again before it had been anything.
    if (!wasThere_ && !isThere_) return;
    const SampleName name = isThere_ ? log_.NameOf(id_) : before_;
    if (!isThere_)
        record_.Deleted.Add(name);
    else if (!wasThere_)
        record_.Added.Add(name);
    else if (name != before_)
        record_.Renamed.push_back({before_, name});
    const bool moved = !isThere_ || !wasThere_ || name != before_;
    if (wasThere_ && moved) ++log_.lives_[before_.IDno];
    if (CompareAnswers(name) || moved) seen_.insert(name);
}

bool SampleChangeLog::Recorder::CompareAnswers(SampleName name) {
    static const EssayList noEssays;
    std::vector<unsigned char> nothing;
    if (!isThere_) nothing.resize(packed_.size());
    const unsigned char* packed = isThere_ ? survey_.Samples.Packed(dno_) : nothing.data();
    const EssayList& essays = isThere_ ? survey_.Samples.Essays(dno_) : noEssays;
    if (std::memcmp(packed, packed_.data(), packed_.size()) == 0 && SameEssays(essays, essays_)) return false;
    bool differs = false;
    for (int q = 0; q < survey_.QuestionCount; ++q) {
        ReadStored(survey_, q, packed_.data(), essays_, answersBefore_);
        ReadStored(survey_, q, packed, essays, answersAfter_);
        if (answersBefore_ == answersAfter_) continue;
        NoteAnswers(q, q, name);
        differs = true;
    }
    return differs;
}

void SampleChangeLog::Recorder::NoteAnswers(int from, int to, SampleName name) {
    key_.resize(0);
    AppendNumber(key_, from);
    AppendNumber(key_, to);
    AppendToKey(key_, answersBefore_);
    AppendToKey(key_, answersAfter_);
    auto place = places_.constFind(key_);
    if (place == places_.cend()) {
        // A copy of its own: the buffer goes on being written.
        place = places_.insert(QByteArray(key_.constData(), key_.size()), record_.Answers.size());
        record_.Answers.push_back(
            {static_cast<qint16>(from), static_cast<qint16>(to), answersBefore_, answersAfter_, {}});
    }
    record_.Answers[*place].Samples.Add(name);
}

void SampleChangeLog::Recorder::BeginRewrite(const Renumbering& map, int questionsAfter) {
    EndWatch();
    FinishRecord();
    map_ = map;
    sources_.assign(static_cast<size_t>(questionsAfter), -1);
    starts_.resize(map.QuestionMap.size() + 1);
    for (size_t q = 0; q < map.QuestionMap.size(); ++q)
        if (map.QuestionMap[q] >= 0) sources_.at(static_cast<size_t>(map.QuestionMap[q])) = static_cast<int>(q);
    record_.Rewrite = true;
    if (!IsIdentity(map)) record_.Map = map;
}

// The questions as they are now, beside each its answers as they were; then the questions that are gone.
void SampleChangeLog::Recorder::Rewritten(SampleName name, const AnswerLists& before, const AnswerLists& after) {
    for (size_t q = 0; q < map_.QuestionMap.size(); ++q)
        starts_[q + 1] = starts_[q] + before.AnoCounts[q];
    int start = 0;
    for (size_t q = 0; q < sources_.size(); ++q) {
        const int source = sources_[q];
        const int old = source < 0 ? 0 : starts_[static_cast<size_t>(source)];
        const int oldCount = source < 0 ? 0 : before.AnoCounts[source];
        const int count = after.AnoCounts[q];
        if (oldCount != count || !Follows(source, before, old, after, start, count)) {
            ReadGiven(before, old, oldCount, answersBefore_);
            ReadGiven(after, start, count, answersAfter_);
            // One 無回答 is as good as no answer.
            if (!answersBefore_.empty() || !answersAfter_.empty()) NoteAnswers(source, static_cast<int>(q), name);
        }
        start += count;
    }
    answersAfter_.clear();
    for (size_t q = 0; q < map_.QuestionMap.size(); ++q) {
        if (map_.QuestionMap[q] >= 0) continue;
        ReadGiven(before, starts_[q], before.AnoCounts[q], answersBefore_);
        if (!answersBefore_.empty()) NoteAnswers(static_cast<int>(q), -1, name);
    }
}

bool SampleChangeLog::Recorder::Follows(int source, const AnswerLists& before, int old, const AnswerLists& after,
                                        int start, int count) const {
    if (count == 0) return true;
    const std::vector<qint16>& choices = map_.ChoiceMap[static_cast<size_t>(source)];
    for (int i = 0; i < count; ++i) {
        const auto choice = static_cast<size_t>(before.Ano[old + i]);
        if (choice >= choices.size() || choices[choice] != after.Ano[start + i] ||
            before.Essays[old + i] != after.Essays[start + i])
            return false;
    }
    return true;
}

void SampleChangeLog::Recorder::FinishRecord() {
    SampleChangeRecord next;
    next.Cause = record_.Cause;
    next.Batch = record_.Batch;
    if (!record_.IsEmpty()) {
        static const QString who = NameOfUser();
        static const QString machine = QSysInfo::machineHostName();
        record_.Number = ++log_.number_;
        if (record_.Batch == 0) next.Batch = record_.Batch = record_.Number;
        record_.Time = QDateTime::currentDateTimeUtc();
        record_.Who = who;
        record_.Machine = machine;
        log_.Tell(record_);
    }
    record_ = std::move(next);
    places_.clear();
    seen_.clear();
}

SampleChangeLog::SampleChangeLog(const Survey& survey) : survey_(survey) {}

SampleChangeLog::~SampleChangeLog() = default;

void SampleChangeLog::Restart() {
    lives_.clear();
    number_ = 0;
    for (SampleChangeListener* listener : listeners_)
        listener->OnRestart();
}

void SampleChangeLog::Repeat(const SampleChangeRecord& record) {
    number_ = std::max(number_, record.Number);
    const auto freed = [this](SampleName name) { lives_[name.IDno] = name.Life + 1; };
    record.Deleted.ForEach(freed);
    for (const IDChange& change : record.Renamed)
        freed(change.Before);
    Tell(record);
}

void SampleChangeLog::Begin(ChangeCause cause) {
    if (depth_++ == 0 && IsHeard()) recorder_ = std::make_unique<Recorder>(*this, cause);
}

void SampleChangeLog::End() noexcept {
    if (--depth_ > 0 || !recorder_) return;
    try {
        recorder_->EndWatch();
        recorder_->FinishRecord();
    } catch (const std::bad_alloc&) {
        // The change itself stands; for want of memory its record is lost.
    }
    recorder_.reset();
}

void SampleChangeLog::Tell(const SampleChangeRecord& record) {
    for (SampleChangeListener* listener : listeners_)
        listener->OnSampleChange(record);
}

qint32 SampleChange::Add(Survey& survey, UserInterface& ui, qint32 id) {
    // The sample looked at so far may move.
    if (IsHeard()) log_.recorder_->EndWatch();
    const qint32 dno = AddSample(survey, ui, id);
    if (dno >= 0 && IsHeard()) log_.recorder_->WatchNew(dno, id);
    return dno;
}

void SampleChange::Delete(Survey& survey, UserInterface& ui, qint32 dno) {
    Open(dno);
    DeleteSample(survey, ui, dno);
    if (!IsHeard()) return;
    log_.recorder_->SetGone();
    log_.recorder_->EndWatch();
}

qint32 SampleChange::ChangeID(Survey& survey, UserInterface& ui, qint32 dno, qint32 id) {
    Open(dno);
    const qint32 to = SampleChangeID(survey, ui, dno, id);
    if (to >= 0 && IsHeard()) log_.recorder_->SetMoved(to, id);
    return to;
}

void SampleChange::BeginRewrite(const Renumbering& map, int questionsAfter) {
    if (IsHeard()) log_.recorder_->BeginRewrite(map, questionsAfter);
}

void SampleChange::Watch(qint32 dno) {
    log_.recorder_->Watch(dno);
}

void SampleChange::CompareRewritten(qint32 id, const AnswerLists& before, const AnswerLists& after) {
    log_.recorder_->Rewritten(log_.NameOf(id), before, after);
}

}  // namespace quibra
