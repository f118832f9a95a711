// The survey that a verb works on.
#pragma once

#include "apps/quibra-cli/console_interface.h"
#include "apps/quibra-cli/verb_line.h"
#include "core/system_call.h"
#include "session/survey_session.h"

namespace quibra {

// How far a verb goes into a survey; what its lock allows is measured by this.
enum class Access {
    Outside,  // its file, and what may be known of it
    Show,     // questions and answers on the screen
    Change,   // changes of it and copies that leave it
    Write,    // changes that go back into its file, which no other program writes meanwhile
};

// Loaded on construction, from standard input when its path is "-"; throws a Refusal when it can't be read or is
// locked. The verb has SurveyOptions.
class OpenedSurvey {
  public:
    // `ui` is whom the session speaks to, the console without one.
    OpenedSurvey(const VerbLine& line, const QString& path, Access access, UserInterface* ui = nullptr);

    SurveySession& Session() { return session_; }
    Survey& Data() { return session_.survey; }
    ConsoleInterface& Console() { return console_; }
    // Where its bytes can be read, which of standard input is a file in memory.
    const QString& Path() const { return path_; }
    // What the user calls it.
    QString Name() const;
    // Puts it back to where it came from, or to standard output if that is standard input. Gives the exit status.
    int Save(StandardOutput& out);
    // False for a survey whose lock hides it and whose password was not given; only with Access::Outside.
    bool IsVisible() const { return visible_; }

  private:
    void Load(Access access);
    void Unlock(const VerbLine& line, Access access);

    Descriptor input_;  // what standard input has held
    ConsoleInterface console_;
    SurveySession session_;
    QString path_;
    bool visible_ = true;
};

// Saves at `path`, or writes to standard output when that is "-". Gives the exit status.
int SaveSurvey(SurveySession& session, const QString& path, StandardOutput& out);

// The folder of the program, with a separator behind it.
QString ProgramDirectory();

}  // namespace quibra
