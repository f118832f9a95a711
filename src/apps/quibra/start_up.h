// The program from its first moment to its last: owns the session and the main window.
#pragma once

#include <QLockFile>
#include <QString>
#include <QStringList>
#include <memory>

#include "session/journal.h"
#include "session/journal_recovery.h"
#include "session/survey_session.h"

namespace quibra {

class FrmMain;

// Where the program keeps what is its own.
struct ProgramFolders {
    QString data;      // work files and the name of a new survey
    QString runtime;   // gone with the login: the mark of a running copy
    QString settings;  // the settings file itself
};
ProgramFolders UserFolders();

// The path that the program is asked to open, empty when there is none. The words behind the program's name are one
// path as they stand; a double quote at its start and one at its end are cut.
QString PathOfCommandLine(const QStringList& arguments);

class StartUp {
  public:
    // `ui` must outlive it.
    StartUp(UserInterface& ui, const ProgramFolders& folders);
    ~StartUp();

    // Shows the main window, with the survey at `path` or the one used last when the user wants it, and first of all
    // with what was typed into one and never saved. False when another copy of the program runs; the user has been
    // told.
    bool Run(const QString& path);

    SurveySession& Session() { return session_; }
    // Null before Run.
    FrmMain* Main() { return main_.get(); }

  private:
    bool IsOnlyCopy();
    void OpenFirst(const QString& path);
    // What a killed program has left; true when it is open now.
    bool OfferLeftJournals();
    bool Restore(const LeftJournal& left);

    UserInterface& ui_;
    ProgramFolders folders_;
    std::unique_ptr<QLockFile> onlyCopy_;
    SurveySession session_;
    std::unique_ptr<Journal> journal_;
    std::unique_ptr<FrmMain> main_;
};

}  // namespace quibra
