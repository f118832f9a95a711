// The steps in which a new survey is made, without their windows: what each does, and which one comes next.
//
// The window shows the panel of Step and leaves when IsClosed. Session and windows must outlive the steps.
#pragma once

#include "session/survey_session.h"

namespace quibra {

// The editors that are gone through, each until it is closed.
class NewSurveyWindows {
  public:
    virtual ~NewSurveyWindows() = default;
    // The survey in memory is another one: windows on the old one close.
    virtual void CloseOthers() = 0;
    // The button 閉じる of this one is its default.
    virtual void ShowAbout() = 0;
    virtual void ShowQuestions() = 0;
    virtual void ShowLines() = 0;
    virtual void ShowQuota() = 0;
};

class NewSurveySteps {
  public:
    enum Step { kIntroduction, kBase, kTitle, kQuestions, kLines, kQuota, kSave };
    struct Panel {
        QString title;
        QString task;
        QString remark;
    };

    NewSurveySteps(SurveySession& session, NewSurveyWindows& windows);

    Step Current() const { return step_; }
    Panel CurrentPanel() const;
    bool IsClosed() const { return closed_; }
    bool CanGoBack() const { return step_ != kIntroduction; }

    // The survey in memory as the base of the new one: its title, or why it may not be.
    const QString& BaseName() const { return baseName_; }
    bool CanUseBase() const { return canUseBase_; }
    bool UsesBase() const { return usesBase_; }
    void SetUsesBase(bool on) { usesBase_ = on && canUseBase_; }

    void Next();
    void Back();
    void Cancel();

  private:
    void LeaveOldSurvey();
    void Save();

    SurveySession& session_;
    NewSurveyWindows& windows_;
    QString baseName_;
    bool canUseBase_;
    bool usesBase_ = false;
    Step step_ = kIntroduction;
    bool closed_ = false;
};

// Empties the survey in memory for a new one: its samples, file and password go, its questions stay.
void ClearForNewSurvey(SurveySession& session);

}  // namespace quibra
