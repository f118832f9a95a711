// What the program works on: the one survey, whether it has changed, which commands are on, the settings, and the user
// to talk to. Owned by the program (or a test), handed down by reference. The user interface must outlive it.
#pragma once

#include <QObject>
#include <optional>

#include "core/sample_change.h"
#include "core/settings.h"
#include "core/survey.h"
#include "core/user_interface.h"
#include "session/lock.h"
#include "session/sheet_draft.h"

namespace quibra {

class SurveySession : public QObject {
    Q_OBJECT
  public:
    // Starts in the dead state: a new survey in memory that may not be saved. `directory` is the program's folder.
    SurveySession(UserInterface& ui, QString directory);

    Survey survey;
    SampleChangeLog changes{survey};  // who changes samples tells it here
    MenuState menu;
    Settings settings = SettingsDefault();
    UserInterface& ui;

    // The changed mark is the state of "save" itself.
    void ChangedOn() { SetChanged(true); }
    void ChangedOff() { SetChanged(false); }
    bool IsChanged() const { return menu.mnuFileSave; }

    // What is in memory is what the file at `path` holds: it was just loaded or written whole.
    void InStepWith(const QString& path) { Q_EMIT InStep(path); }
    // The user does not want what has changed.
    void DeclineChanges() { Q_EMIT ChangesDeclined(); }

    // The sheet that is being typed, while it is not read yet.
    const std::optional<SheetDraft>& Draft() const { return draft_; }
    void SetDraft(const std::optional<SheetDraft>& draft);

    void NewSurvey();
    // The data in memory are no longer to be trusted: nothing may be saved or shown.
    void DeadSurvey();
    bool IsDead() const { return survey.FileName == kUnsavable; }
    // The lock's two looks; see session/lock.h.
    void Lock();
    void Unlock();
    // Puts `path` in front of the recent files.
    void RecentAdd(const QString& path);

    // The settings come from the file at `path` and go back there. Their quota is the survey's while the program runs.
    void ReadSettings(const QString& path);
    void WriteSettings();

    const QString& Directory() const { return directory_; }

    // Tells the windows that something they show has changed.
    void Refresh() { Q_EMIT StateChanged(); }

  Q_SIGNALS:
    // Title, file, numbers of questions or samples, the lock, the changed mark or the recent files may be others.
    void StateChanged();
    void InStep(const QString& path);
    void ChangesDeclined();
    void DraftChanged();

  private:
    void SetChanged(bool on);

    QString directory_;
    QString settingsPath_;
    std::optional<SheetDraft> draft_;
};

}  // namespace quibra
