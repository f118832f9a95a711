// What the program works on: the one survey, whether it has changed, which commands are on, the recent files, and the
// user to talk to. Owned by the program (or a test), handed down by reference. The user interface must outlive it.
#pragma once

#include <QStringList>

#include "core/lock.h"
#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

class SurveySession {
  public:
    // Starts in the dead state: a new survey in memory that may not be saved. `directory` is the program's folder.
    SurveySession(UserInterface& ui, QString directory);
    virtual ~SurveySession() = default;
    SurveySession(const SurveySession&) = delete;
    SurveySession& operator=(const SurveySession&) = delete;

    Survey survey;
    MenuState menu;
    QStringList recentFiles;  // newest first, at most kRecentFiles
    UserInterface& ui;

    static constexpr int kRecentFiles = 5;

    // The changed mark is the state of "save" itself.
    void ChangedOn() { menu.mnuFileSave = true; }
    void ChangedOff() { menu.mnuFileSave = false; }
    bool IsChanged() const { return menu.mnuFileSave; }

    void NewSurvey();
    // The data in memory are no longer to be trusted: nothing may be saved or shown.
    void DeadSurvey();
    bool IsDead() const { return survey.FileName == kUnsavable; }
    // Puts `path` in front of the recent files.
    void RecentAdd(const QString& path);

    const QString& Directory() const { return directory_; }

  private:
    QString directory_;
};

}  // namespace quibra
