// What the verbs share: exit statuses, how a verb is refused, its command line, and the two streams it writes to. Data
// go to standard output, messages to standard error, both as UTF-8.
#pragma once

#include <QCommandLineParser>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include "apps/quibra-cli/console_interface.h"
#include "session/survey_session.h"

namespace quibra {

enum ExitStatus { kDone = 0, kRefused = 1, kWrongUsage = 2 };

// Thrown by a verb that can't go on: the reason in the user's words, empty when the user has been told already.
struct Refusal {
    QString reason;
    ExitStatus status = kRefused;
};
[[noreturn]] void RefuseUsage(const QString& reason);

// One line on standard error.
void ErrorLine(const QString& text);

// Standard output.
class StandardOutput : public QIODevice {
  public:
    StandardOutput() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
    bool isSequential() const override { return true; }

    // Writes all of it or throws a RuntimeError.
    void Print(const QByteArray& bytes);
    void Print(const QString& text) { Print(text.toUtf8()); }
    // True once nobody listens any more, which is no failure to speak of.
    bool IsAbandoned() const;

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override;

  private:
    int error_ = 0;
};

// A verb's options and arguments. Construct, add options and arguments, Parse, then ask.
class VerbLine {
  public:
    VerbLine(const QString& verb, const QString& description);

    // An option with a value, or without one when `valueName` is empty.
    void AddOption(const QString& name, const QString& description, const QString& valueName = QString());
    // How the arguments look in the usage line, and how many of them there are; `most` -1 is any number.
    void SetArguments(const QString& syntax, qsizetype least, qsizetype most);
    // --password and --yes.
    void AddSurveyOptions();

    // False when help was asked for and has been shown.
    bool Parse(const QStringList& arguments, StandardOutput& out);

    bool Has(const QString& option) const { return parser_.isSet(option); }
    QString Value(const QString& option) const { return parser_.value(option); }
    QStringList Values(const QString& option) const { return parser_.values(option); }
    // The whole number that an option gives, or `otherwise` without it.
    int Number(const QString& option, int low, int high, int otherwise) const;
    const QStringList Arguments() const { return parser_.positionalArguments(); }
    // Refuses more than one of these.
    void AllowOneOf(const QStringList& options) const;

  private:
    QString HelpText() const;

    QCommandLineParser parser_;
    QString verb_;
    QString description_;
    QString syntax_;
    qsizetype least_ = 0;
    qsizetype most_ = 0;
};

// How far a verb goes into a survey; what its lock allows is measured by this.
enum class Access {
    Outside,  // its file, and what may be known of it
    Show,     // questions and answers on the screen
    Change,   // changes of it and copies that leave it
};

// A survey that a verb works on, loaded on construction. Throws a Refusal when it can't be read or is locked.
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

// "3" or "Q3" as a question of the survey, counting from 0 here; wrong usage for anything else.
int QuestionArgument(const Survey& survey, const QString& text);
// A whole number in a range; `what` names it in the message.
qint32 IntegerArgument(const QString& text, const QString& what, qint32 low, qint32 high);

}  // namespace quibra
