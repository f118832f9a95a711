// The verbs of quibra-cli. Each comes from the file that runs it, and stands once more in the list of verbs.cpp.
#pragma once

#include "apps/quibra-cli/verb.h"

namespace quibra {

// In the order of the help.
const QList<Verb>& Verbs();
// nullptr for a name that is none.
const Verb* FindVerb(const QString& name);

// Options of every verb that opens a survey; OpenedSurvey looks at them.
QList<VerbOption> SurveyOptions();
// The last of these, for other verbs that ask.
VerbOption YesOption();

// Surveys as files.
Verb InfoVerb();
Verb DumpVerb();
Verb BuildVerb();
Verb ConvertVerb();
// The questionnaire.
Verb NewVerb();
Verb EditVerb();
Verb ListVerb();
Verb QuestionsVerb();
Verb PropertiesVerb();
Verb MeasureVerb();
// One sample's answers.
Verb GetVerb();
Verb SetVerb();
// Answer sheets and the checks of answers.
Verb SheetVerb();
Verb ParseVerb();
Verb CheckVerb();
// A sample in words.
Verb ShowVerb();
// Keying in without its window.
Verb EntryVerb();
// Lines of the answer sheet.
Verb LinesVerb();
// Results.
Verb TotalVerb();
Verb EssaysVerb();
Verb PageVerb();
Verb ChartVerb();

}  // namespace quibra
