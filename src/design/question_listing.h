// The questionnaire as text: the listing that people read, and the question text file for other programs. Both files
// are code page 932 with CR LF.
#pragma once

#include "session/survey_session.h"

namespace quibra {

// A question's label in full and its choices, 無回答 included, a line each.
QString QuestionListing(const Survey& survey, int q);
// Questions first to last, an empty line behind each.
QString QuestionsListing(const Survey& survey, int first, int last);

// The definition for other programs: a head, and for each question a line of fields, a line a choice and an empty line.
// Questions count from 0; nothing is quoted.
QString QuestionText(const Survey& survey);

// The two commands that write them: ask for what they need, write, and say so at the end. A file that can't be written
// is told.
void OutputListing(SurveySession& session);
void OutputQuestionText(SurveySession& session);

}  // namespace quibra
