// The editors that the making of a new survey leads through: writes down which were shown.
#pragma once

#include <QStringList>

#include "design/new_survey_steps.h"

namespace quibra {

class ScriptedSteps : public NewSurveyWindows {
  public:
    QStringList shown;

    void CloseOthers() override { shown += QStringLiteral("close"); }
    void ShowAbout() override { shown += QStringLiteral("about"); }
    void ShowQuestions() override { shown += QStringLiteral("questions"); }
    void ShowLines() override { shown += QStringLiteral("lines"); }
    void ShowQuota() override { shown += QStringLiteral("quota"); }
};

}  // namespace quibra
