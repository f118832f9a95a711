// What the program works on: the one survey, whether it has changed, which commands are on, the settings, and the user
// to talk to. Owned by the program (or a test), handed down by reference. The user interface must outlive it.
#pragma once

#include <QFlags>
#include <QObject>
#include <memory>
#include <optional>

#include "core/file_lock.h"
#include "core/file_names.h"
#include "core/sample_change.h"
#include "core/survey.h"
#include "core/user_interface.h"
#include "session/lock.h"
#include "session/sheet_draft.h"

namespace quibra {

struct Settings;
class UnfinishedEdit;

class SurveySession : public QObject {
    Q_OBJECT
  public:
    // Starts in the dead state: a new survey in memory that may not be saved. `directory` is the program's folder.
    SurveySession(UserInterface& ui, QString directory);
    ~SurveySession() override;

    // Apart, so that who includes this needs core/settings.h only to look into them.
  private:
    const std::unique_ptr<Settings> ownSettings_;

  public:
    Survey survey;
    SampleChangeLog changes{survey};  // who changes samples tells it here
    MenuState menu;
    Settings& settings;
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

    // The edit that is open, null while none is; whoever writes the survey looks through session/unfinished_edit.h.
    UnfinishedEdit* Edit() const { return edit_; }
    void SetEdit(UnfinishedEdit* edit) { edit_ = edit; }

    void NewSurvey();
    // The data in memory are no longer to be trusted: nothing may be saved or shown.
    void DeadSurvey();
    bool IsDead() const { return survey.FileName == kUnsavable; }
    // While a load runs what is in memory is nobody's work yet.
    bool IsLoading() const { return loading_; }
    void SetLoading(bool on) { loading_ = on; }
    // The lock's two looks; see session/lock.h.
    void Lock();
    void Unlock();
    // Puts `path` in front of the recent files.
    void RecentAdd(const QString& path);

    // The settings come from the file at `path` and go back there. Their quota is the survey's while the program runs.
    void ReadSettings(const QString& path);
    void WriteSettings();

    // Keeps other programs from writing the file at `path` until the session ends or holds another one; see
    // core/file_lock.h. For a program that loads a survey in order to change its file. A save holds it by itself.
    void HoldFile(const QString& path);
    bool HoldsFile(const QString& path) const { return held_ && held_->Path() == path; }
    // The file at `path`, just loaded or saved, is the version in memory.
    void RememberFile(const QString& path);
    enum class FileState { Unknown, Same, Changed, Vanished };
    // What has become of the file at `path` since: Unknown where it is not the one remembered.
    FileState StateOfFile(const QString& path) const;

    const QString& Directory() const { return directory_; }

    // What may have become another one.
    enum class Change {
        File = 1,        // the name of the survey's file, its title, the changed mark
        Definition = 2,  // questions and conditions
        Samples = 4,     // their number or answers
        Lock = 8,        // the level or the look of the lock, and with it the commands
        Settings = 16,   // the recent files among them
    };
    Q_DECLARE_FLAGS(Changes, Change)
    friend constexpr Changes operator|(Change one, Change other) { return Changes(one) | other; }
    // Tells the windows.
    void Refresh(Changes what) { Q_EMIT StateChanged(what); }

  Q_SIGNALS:
    void StateChanged(SurveySession::Changes what);
    void InStep(const QString& path);
    void ChangesDeclined();
    void DraftChanged();

  private:
    void SetChanged(bool on);

    QString directory_;
    QString settingsPath_;
    std::optional<SheetDraft> draft_;
    UnfinishedEdit* edit_ = nullptr;
    bool loading_ = false;
    std::optional<FileLock> held_;
    QString rememberedPath_;
    std::optional<FileStamp> rememberedStamp_;
};

}  // namespace quibra
