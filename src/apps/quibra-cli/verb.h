// What a verb of quibra-cli is: one entry of the table in verbs.cpp, from which help, the manual's pages, bash
// completion and the tests that walk all verbs are made.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quibra {

class StandardOutput;
class VerbLine;

struct VerbOption {
    QString name;              // without its dashes
    QString value;             // what stands behind it, "N"; two of them, "LOW HIGH"; empty for none
    QString text;              // what it does, in Japanese
    QString english;           // the same for the English manual
    QStringList choices = {};  // the only values, where there are few; the first one is that of an absent option
    bool repeats = false;      // may be given more than once
};

struct Verb {
    QString name;
    QString summary;    // one line in the list of verbs
    QString arguments;  // as in the usage line: "FILE ID Q ANSWER...", "IN [OUT]"
    QString text;       // the paragraphs of its help
    QString english;    // the same for the English manual
    QList<VerbOption> options;
    // Gets the words given, understood, and the standard output; gives an exit status, and throws a Refusal or a
    // RuntimeError when it can't do what was asked.
    int (*run)(const VerbLine& line, StandardOutput& out);
    bool draws = false;  // needs fonts

    QString Usage() const;                                  // "使い方: ..."
    const VerbOption* Option(const QString& option) const;  // nullptr when it has none of that name
};

// The name of an option as it is typed: "--rank", "-h".
QString Dashed(const QString& option);

}  // namespace quibra
