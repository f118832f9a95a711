#include "session/survey_session.h"

#include "core/settings.h"

namespace quibra {

SurveySession::SurveySession(UserInterface& userInterface, QString directory)
    : ownSettings_(std::make_unique<Settings>(SettingsDefault())),
      settings(*ownSettings_),
      ui(userInterface),
      directory_(std::move(directory)) {
    if (!directory_.endsWith(u'/')) directory_ += u'/';
    NewSurvey();
    DeadSurvey();
}

SurveySession::~SurveySession() = default;

void SurveySession::SetChanged(bool on) {
    if (menu.mnuFileSave == on) return;
    menu.mnuFileSave = on;
    Refresh(Change::File | Change::Lock);
}

void SurveySession::SetDraft(const std::optional<SheetDraft>& draft) {
    if (draft_ == draft) return;
    draft_ = draft;
    Q_EMIT DraftChanged();
}

void SurveySession::NewSurvey() {
    NewSurveyHead(survey, directory_);
    NewSurveyBody(survey);
    changes.Restart();
    menu.mnuFileSave = false;
    Refresh(Change::File | Change::Definition | Change::Samples | Change::Lock);
}

void SurveySession::DeadSurvey() {
    survey.LockLevel = 2;
    survey.FileName = kUnsavable.toString();
    changes.Restart();
    Lock();
    Refresh(Change::File | Change::Definition | Change::Samples);
}

void SurveySession::Lock() {
    LockApply(survey, menu);
    Refresh(Change::Lock);
}

void SurveySession::Unlock() {
    LockRelease(menu);
    Refresh(Change::File | Change::Lock);
}

void SurveySession::RecentAdd(const QString& path) {
    quibra::RecentAdd(settings, path);
    Refresh(Change::Settings);
}

void SurveySession::HoldFile(const QString& path) {
    held_.reset();
    held_.emplace(path, [this] { ui.LetEventsRun(); });
}

void SurveySession::RememberFile(const QString& path) {
    rememberedPath_ = path;
    rememberedStamp_ = StampOf(path);
}

SurveySession::FileState SurveySession::StateOfFile(const QString& path) const {
    if (!rememberedStamp_ || path != rememberedPath_) return FileState::Unknown;
    const std::optional<FileStamp> stamp = StampOf(path);
    if (!stamp) return FileState::Vanished;
    return stamp == rememberedStamp_ ? FileState::Same : FileState::Changed;
}

void SurveySession::ReadSettings(const QString& path) {
    settingsPath_ = path;
    settings = SettingsRead(path);
    survey.QuotaFirst = settings.QuotaFirst;
    survey.QuotaLast = settings.QuotaLast;
    Refresh(Change::Settings);
}

void SurveySession::WriteSettings() {
    settings.QuotaFirst = survey.QuotaFirst;
    settings.QuotaLast = survey.QuotaLast;
    SettingsWrite(settings, settingsPath_);
}

}  // namespace quibra
