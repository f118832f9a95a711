// The words behind a verb, understood by what its entry in the table says.
#pragma once

#include <QCommandLineParser>
#include <utility>

#include "apps/quibra-cli/console.h"
#include "apps/quibra-cli/verb.h"
#include "core/survey.h"

namespace quibra {

class VerbLine {
  public:
    // Refuses what the verb doesn't take, and names it. `verb` must outlive the line.
    VerbLine(const Verb& verb, const QStringList& words);

    // -h or --help: nothing else has been looked at.
    bool WantsHelp() const { return wantsHelp_; }

    bool Has(const QString& option) const { return parser_.isSet(option); }
    // Of an absent option with choices the first one, of any other an empty text.
    QString Value(const QString& option) const;
    QStringList Values(const QString& option) const { return parser_.values(option); }
    // The values of an option with two.
    std::pair<QString, QString> Pair(const QString& option) const;
    // The whole number that an option gives, or `otherwise` without it.
    int Number(const QString& option, int low, int high, int otherwise) const;
    QString Argument(qsizetype index) const { return parser_.positionalArguments().value(index); }
    QStringList Arguments() const { return parser_.positionalArguments(); }
    // Refuses more than one of these.
    void AllowOneOf(const QStringList& options) const;
    // Whether one of these, which write the survey, is given. Refused for a survey from standard input: standard output
    // is taken by what the verb prints.
    bool Changes(const QStringList& options) const;

  private:
    QStringList JoinPairs(const QStringList& words) const;
    void RefuseMisunderstood() const;
    void CheckOptions() const;
    void CheckArguments() const;

    const Verb& verb_;
    QCommandLineParser parser_;
    bool wantsHelp_ = false;
};

// "3" or "Q3" as a question of the survey, counting from 0 here; wrong usage for anything else.
int QuestionArgument(const Survey& survey, const QString& text);
// The place of the sample with this ID; refuses one that isn't there.
qint32 SampleArgument(const Survey& survey, const QString& text);
// A whole number in a range; `what` names it in the message. Full-width figures read as figures.
qint32 IntegerArgument(const QString& text, const QString& what, qint32 low, qint32 high);
// A finite number.
double NumberArgument(const QString& text);

}  // namespace quibra
