// The survey that a verb works on.
#pragma once

#include "apps/quibra-cli/console_interface.h"
#include "apps/quibra-cli/verb_line.h"
#include "session/survey_session.h"

namespace quibra {

// How far a verb goes into a survey; what its lock allows is measured by this.
enum class Access {
    Outside,  // its file, and what may be known of it
    Show,     // questions and answers on the screen
    Change,   // changes of it and copies that leave it
    Write,    // changes that go back into its file, which no other program writes meanwhile
};

// Loaded on construction; throws a Refusal when it can't be read or is locked. The verb has SurveyOptions.
class OpenedSurvey {
  public:
    OpenedSurvey(const VerbLine& line, const QString& path, Access access);

    SurveySession& Session() { return session_; }
    Survey& Data() { return session_.survey; }
    ConsoleInterface& Console() { return console_; }
    const QString& Path() const { return path_; }
    // False for a survey whose lock hides it and whose password was not given; only with Access::Outside.
    bool IsVisible() const { return visible_; }

  private:
    void Load(Access access);
    void Unlock(const VerbLine& line, Access access);

    ConsoleInterface console_;
    SurveySession session_;
    QString path_;
    bool visible_ = true;
};

// The folder of the program, with a separator behind it.
QString ProgramDirectory();

}  // namespace quibra
