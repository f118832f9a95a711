// What is made of the table of verbs for people and for the shell.
#pragma once

#include <QString>

#include "apps/quibra-cli/verb.h"

namespace quibra {

// quibra-cli --help, and the help of one verb.
QString Overview();
QString HelpText(const Verb& verb);

// A manual page from its template, in which a line "@VERBS@" stands for the sections of all verbs.
QString ManualPage(const QString& pageTemplate, bool japanese);

// A script for bash-completion: verbs, their options, and the values of options that have only a few.
QString BashCompletion();

}  // namespace quibra
