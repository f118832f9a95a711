// The verbs of quibra-cli. Each gets the words behind its name and the standard output, gives an exit status, and
// throws a Refusal or a RuntimeError when it can't do what was asked.
#pragma once

#include <QStringList>

#include "apps/quibra-cli/console.h"

namespace quibra {

// Surveys as files.
int RunInfo(const QStringList& arguments, StandardOutput& out);
int RunDump(const QStringList& arguments, StandardOutput& out);
int RunBuild(const QStringList& arguments, StandardOutput& out);
int RunConvert(const QStringList& arguments, StandardOutput& out);
// One sample's answers.
int RunGet(const QStringList& arguments, StandardOutput& out);
int RunSet(const QStringList& arguments, StandardOutput& out);
// Results.
int RunTotal(const QStringList& arguments, StandardOutput& out);
int RunEssays(const QStringList& arguments, StandardOutput& out);

}  // namespace quibra
