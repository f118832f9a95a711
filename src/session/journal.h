// Keeps what is done to the survey's samples, from the last save on, in a file beside the settings, so that a program
// that is killed, or a machine that loses its power, costs the last moment at most. Gone after a save, and when the
// user declines the changes at the end. What a program that was killed has left is offered by
// session/journal_recovery.h.
//
// A record is on its way to the disk as soon as a sample has changed, a sheet that is typed a few times a second. The
// questionnaire goes in front of a record when it is not the one of before. A journal that can't be written hinders
// nobody; the user is told once.
#pragma once

#include <QObject>
#include <memory>

#include "session/journal_file.h"
#include "session/survey_session.h"

namespace quibra {

class Journal : public QObject, private SampleChangeListener {
    Q_OBJECT
  public:
    // The session must outlive it. `folder` is made when the first journal is.
    Journal(SurveySession& session, const QString& folder);
    ~Journal() override;

    // Returns once all that was done is on the disk.
    void Flush();
    // What keeps the journal from being written, empty while nothing does.
    QString Failure() const;

  private:
    void OnSampleChange(const SampleChangeRecord& record) override;
    void OnRestart() override;
    void OnInStep(const QString& path);
    void OnStateChanged();
    void OnDraftChanged();
    bool Start();
    void AppendDefinition();
    void Discard();
    void TellFailure();

    SurveySession& session_;
    QString folder_;
    std::unique_ptr<JournalFile> file_;
    QString failure_;
    JournalHeader base_;
    size_t definition_ = 0;  // hash of the questionnaire that the journal or its file has, 0 for none
    size_t shape_ = 0;       // of how its samples lie
    bool declined_ = false;
    bool toldFailure_ = false;
};

// Where journals lie: a folder beside the settings file.
QString JournalFolder(const QString& settingsPath);

// The journal's view of the file at `path`: when and how large it was last written.
JournalHeader JournalHeaderOf(const QString& path);

}  // namespace quibra
