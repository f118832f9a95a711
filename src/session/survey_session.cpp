#include "session/survey_session.h"

namespace quibra {

SurveySession::SurveySession(UserInterface& userInterface, QString directory)
    : ui(userInterface), directory_(std::move(directory)) {
    if (!directory_.endsWith(u'/')) directory_ += u'/';
    NewSurvey();
    DeadSurvey();
}

void SurveySession::SetChanged(bool on) {
    if (menu.mnuFileSave == on) return;
    menu.mnuFileSave = on;
    Refresh();
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
    Refresh();
}

void SurveySession::DeadSurvey() {
    survey.LockLevel = 2;
    survey.FileName = kUnsavable.toString();
    changes.Restart();
    Lock();
}

void SurveySession::Lock() {
    LockApply(survey, menu);
    Refresh();
}

void SurveySession::Unlock() {
    LockRelease(menu);
    Refresh();
}

void SurveySession::RecentAdd(const QString& path) {
    quibra::RecentAdd(settings, path);
    Refresh();
}

void SurveySession::ReadSettings(const QString& path) {
    settingsPath_ = path;
    settings = SettingsRead(path);
    survey.QuotaFirst = settings.QuotaFirst;
    survey.QuotaLast = settings.QuotaLast;
    Refresh();
}

void SurveySession::WriteSettings() {
    settings.QuotaFirst = survey.QuotaFirst;
    settings.QuotaLast = survey.QuotaLast;
    SettingsWrite(settings, settingsPath_);
}

}  // namespace quibra
