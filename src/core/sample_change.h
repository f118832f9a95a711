// Every change of a sample, whoever makes it: typing, a command, an import, a batch, the rewrite after the definition
// was edited. What has become of which sample is told to those who listen (the journal; a history and undo can stand on
// it).
//
//     SampleChange change(session.changes, ChangeCause::Typing);
//     change.Open(dno);                  // from here on the sample may be changed by core/answer_store.h
//     SetAllAnswersEssay(survey, dno, ...);
//                                        // the end of `change` makes the record, or none when nothing differs
//
// A SampleChange that is made while another one lives is a part of it, so a batch is one SampleChange around everything
// and one record at its end; the cause is that of the outermost. In a batch one sample is looked at after the other:
// opening one ends the look at the one before. One that comes again later in the same batch begins another record of
// it.
//
// While nobody listens all of this costs a test of a pointer. Else a record grows by about a byte for each sample and
// question changed, and nothing is allocated for a sample whose change another one had before it.
#pragma once

#include <QHash>
#include <memory>
#include <vector>

#include "core/sample_change_record.h"
#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

class SampleChangeListener {
  public:
    virtual ~SampleChangeListener() = default;
    // At the end of a change. The survey is as the record left it. Must not change samples.
    virtual void OnSampleChange(const SampleChangeRecord& record) = 0;
    // What comes now belongs to another survey.
    virtual void OnRestart() {}
};

// The answers of one sample as lists beside each other: a count a question, the answers behind each other. See
// GetAllAnswersEssay.
struct AnswerLists {
    const qint16* AnoCounts;
    const qint16* Ano;
    const QString* Essays;
};

// Owned by SurveySession, one for its survey, which must outlive it.
class SampleChangeLog {
  public:
    explicit SampleChangeLog(const Survey& survey);
    ~SampleChangeLog();
    SampleChangeLog(const SampleChangeLog&) = delete;
    SampleChangeLog& operator=(const SampleChangeLog&) = delete;

    // A listener must outlive its registration.
    void AddListener(SampleChangeListener* listener) { listeners_.push_back(listener); }
    void RemoveListener(SampleChangeListener* listener) { std::erase(listeners_, listener); }
    bool IsHeard() const { return !listeners_.empty(); }

    // Another survey has come into memory: numbers and lives begin anew. REQUIRES: no change is open.
    void Restart();
    // Hands on a record that was made earlier, as by a journal that is played back; numbers and lives go on behind it.
    void Repeat(const SampleChangeRecord& record);

    // The name of the sample that has, or would get, this ID.
    SampleName NameOf(qint32 id) const { return {id, lives_.value(id)}; }

  private:
    friend class SampleChange;
    class Recorder;

    void Begin(ChangeCause cause);
    void End() noexcept;
    void Tell(const SampleChangeRecord& record);

    const Survey& survey_;
    std::vector<SampleChangeListener*> listeners_;
    QHash<qint32, qint32> lives_;  // of the IDs that were freed
    qint64 number_ = 0;            // of the last record
    int depth_ = 0;
    std::unique_ptr<Recorder> recorder_;  // while a change is open that somebody listens to
};

// One change, or a batch of them, from its construction to its destruction.
class SampleChange {
  public:
    SampleChange(SampleChangeLog& log, ChangeCause cause) : log_(log) { log_.Begin(cause); }
    ~SampleChange() { log_.End(); }
    SampleChange(const SampleChange&) = delete;
    SampleChange& operator=(const SampleChange&) = delete;

    // Before a sample's answers are changed. Opening it again while no other was opened is free.
    void Open(qint32 dno) {
        if (IsHeard()) Watch(dno);
    }
    // The operations of core/answer_store.h on the list of samples. `survey` is that of the log.
    qint32 Add(Survey& survey, UserInterface& ui, qint32 id);
    void Delete(Survey& survey, UserInterface& ui, qint32 dno);
    qint32 ChangeID(Survey& survey, UserInterface& ui, qint32 dno, qint32 id);

    // What follows is the rewrite of all samples behind an edited definition: instead of Open, Rewritten is called once
    // for each sample, or for each that may not just have followed the map, with its answers to the questions as they
    // were and as they are now. REQUIRES: `map` has an entry for each old question and choice, targets below
    // `questionsAfter`; at the end the survey has its new definition and layout.
    void BeginRewrite(const Renumbering& map, int questionsAfter);
    void Rewritten(qint32 id, const AnswerLists& before, const AnswerLists& after) {
        if (IsHeard()) CompareRewritten(id, before, after);
    }
    // False while nobody listens: what is made for Rewritten alone need not be made.
    bool IsHeard() const { return log_.recorder_ != nullptr; }

  private:
    void Watch(qint32 dno);
    void CompareRewritten(qint32 id, const AnswerLists& before, const AnswerLists& after);

    SampleChangeLog& log_;
};

}  // namespace quibra
