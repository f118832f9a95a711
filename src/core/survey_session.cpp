#include "core/survey_session.h"

namespace quibra {

SurveySession::SurveySession(UserInterface& userInterface, QString directory)
    : ui(userInterface), directory_(std::move(directory)) {
    if (!directory_.endsWith(u'/')) directory_ += u'/';
    NewSurvey();
    DeadSurvey();
}

void SurveySession::NewSurvey() {
    NewSurveyHead(survey, directory_);
    NewSurveyBody(survey);
    ChangedOff();
}

void SurveySession::DeadSurvey() {
    survey.LockLevel = 2;
    LockApply(survey, menu);
    survey.FileName = kUnsavable.toString();
}

void SurveySession::RecentAdd(const QString& path) {
    if (path.isEmpty()) return;
    recentFiles.removeAll(path);
    recentFiles.prepend(path);
    while (recentFiles.size() > kRecentFiles)
        recentFiles.removeLast();
}

}  // namespace quibra
