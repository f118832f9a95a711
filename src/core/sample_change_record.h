// What has become of which sample, as one record: all that is needed to do a change again or to take it back. Plain
// data; core/sample_change.h makes them.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <functional>
#include <vector>

namespace quibra {

// Who or what changed samples. The values go to disk.
enum class ChangeCause : qint8 {
    Typing = 1,
    Command = 2,
    Check = 3,
    Import = 4,
    Reply = 5,
    Merge = 6,
    BatchAdd = 7,
    Rewrite = 8,
    Undo = 9,
    Recode = 10,  // texts of coded answers, while the definition is being edited
};

// A sample for all time. An ID that was freed is issued again: its lives are counted, from 0 with the survey's opening.
struct SampleName {
    qint32 IDno = 0;
    qint32 Life = 0;

    bool operator==(const SampleName&) const = default;
    friend size_t qHash(SampleName name, size_t seed = 0) { return qHashMulti(seed, name.IDno, name.Life); }
};

// Names of samples in the order in which they were added, at about a byte each when their IDs ascend.
class SampleNames {
  public:
    void Add(SampleName name);
    qint64 Count() const { return count_; }
    void ForEach(const std::function<void(SampleName)>& visit) const;

    // The form on disk, see the .cpp. False when `bytes` are not those of exactly `count` names; then nothing is taken.
    const QByteArray& Bytes() const { return bytes_; }
    bool SetBytes(QByteArrayView bytes, qint64 count);

    bool operator==(const SampleNames& other) const { return count_ == other.count_ && bytes_ == other.bytes_; }

  private:
    QByteArray bytes_;
    qint64 count_ = 0;
    qint64 last_ = 0;
};

// What a field of a sample holds, with the text that lies beside it.
struct StoredAnswer {
    qint16 Cno = 0;
    QString Essay;

    bool operator==(const StoredAnswer&) const = default;
};
using StoredAnswers = std::vector<StoredAnswer>;  // up to the last field that holds something

// What has become what in one question, and in which samples.
struct AnswerChange {
    // The question's number before and after; they differ in a rewrite alone, where -1 is a question that is gone or
    // new.
    qint16 From = 0;
    qint16 To = 0;
    StoredAnswers Before;
    StoredAnswers After;
    SampleNames Samples;
};

struct IDChange {
    SampleName Before;
    SampleName After;
};

// Where the questions and choices of an edited definition have gone; -1 nowhere.
struct Renumbering {
    std::vector<qint16> QuestionMap;             // by old question
    std::vector<std::vector<qint16>> ChoiceMap;  // by old question and old choice
};

// Done in this order: samples deleted, IDs changed, samples added, answers changed. Each sample is in it once, by its
// name behind the changes of IDs; answers of a deleted one go from what they were to nothing.
struct SampleChangeRecord {
    qint64 Number = 0;  // from 1, in sequence
    qint64 Batch = 0;   // number of the first record of the same batch
    QDateTime Time;     // of its end, UTC
    QString Who;
    QString Machine;
    ChangeCause Cause = ChangeCause::Typing;
    // The definition was edited, and all samples were rewritten. First they followed the map, which is empty where
    // nothing was renumbered; Answers tells what else became of them. Answers that have just followed it have no entry.
    bool Rewrite = false;
    Renumbering Map;

    SampleNames Deleted;
    std::vector<IDChange> Renamed;
    SampleNames Added;
    std::vector<AnswerChange> Answers;

    bool IsEmpty() const;
};

}  // namespace quibra
