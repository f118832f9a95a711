// An edit of the questionnaire that the samples don't follow yet. The survey in memory then has a definition by which
// its samples do not lie, and no file may get the two together.
#pragma once

#include "session/survey_session.h"

namespace quibra {

// Registered with the session by who edits, as long as the edit is open.
class UnfinishedEdit {
  public:
    virtual ~UnfinishedEdit() = default;

    // Gives the survey the definition by which its samples lie. False when it has it already. Needs no memory: it may
    // be called because there is none.
    virtual bool SetAside() noexcept = 0;
    // REQUIRES: SetAside was true. Gives the survey the edited definition again.
    virtual void TakeUp() noexcept = 0;
};

// While it lives the session's survey is fit to be written, whatever is being edited.
class WholeSurvey {
  public:
    explicit WholeSurvey(const SurveySession& session)
        : aside_(session.Edit() && session.Edit()->SetAside() ? session.Edit() : nullptr) {}
    ~WholeSurvey() {
        if (aside_) aside_->TakeUp();
    }
    WholeSurvey(const WholeSurvey&) = delete;
    WholeSurvey& operator=(const WholeSurvey&) = delete;

  private:
    UnfinishedEdit* const aside_;
};

}  // namespace quibra
