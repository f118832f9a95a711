// The one-line notation of conditions, for people at a command line: words separated by blanks, each one a line.
//   Q3=2     answered 2 to question 3 (必須)        |Q3=4    or 4 (又は)         -Q5=1   but not 1 to question 5 (除く)
//   Q5=3..7  any of 3 to 7 (から)                   Q5@2=3   3 at position 2      P4      predefined condition 4 holds
// Questions count from 1, predefined conditions from 0, choices are choice numbers.
#pragma once

#include <QString>

#include "core/limit_list.h"
#include "core/survey.h"

namespace quibra {

// Why a condition was refused, and which part of the text is to blame.
struct NotationError {
    QString message;
    qsizetype position = 0;
    qsizetype length = 0;
};

// Reads `text` into `list` (bound 15). False, with `error` filled in, for anything that is no condition of this survey.
bool ParseCondition(const Survey& survey, const QString& text, LimitList& list, NotationError& error);

// The message with the text and a line of carets under the word that is wrong.
QString NotationErrorText(const QString& text, const NotationError& error);

}  // namespace quibra
