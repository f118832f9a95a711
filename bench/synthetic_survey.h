// The survey that the benchmarks measure on: 60 questions of 2 to 30 choices, two of three with a single answer and the
// others with up to five, a tenth of them unanswered, and as many samples as asked for. The same for the same number.
#pragma once

#include "core/survey.h"
#include "tabulation/total_option.h"

namespace quibra {

inline constexpr qint32 kMillion = 1'000'000;

// `texts`: a third of the samples also have a text, by choice 1 of the first question.
Survey MakeSyntheticSurvey(qint32 samples, bool texts = false);
// One for all benchmarks, a million samples, made at its first use.
Survey& SyntheticSurvey();

// Answers that the samples hold to all questions.
qint64 AnswersOf(const Survey& survey);

// The table of all questions, with `columns` individual limits: choices of question 30, one a column.
TotalOption AllQuestions(const Survey& survey, int columns);
// A condition of three terms over three questions.
LimitList ThreeTerms();

}  // namespace quibra
