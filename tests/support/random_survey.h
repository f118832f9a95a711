// Surveys and conditions made by chance, for holding a fast way of doing a thing against the plain one.
#pragma once

#include <random>

#include "core/survey.h"

namespace quibra {

using Random = std::mt19937;

// A number from `low` to `high`.
int Pick(Random& random, int low, int high);

// Up to `questions` questions of every shape, from one choice to 127, and packed answers in `samples` samples: filled
// ones, empty ones, gaps, repeated answers, and numbers beyond the question's choices, which only damaged files hold.
// IDs ascend.
Survey MakeRandomSurvey(Random& random, int questions, qint32 samples);

// Makes of it a survey whose samples could have been typed: symbols of every kind, status bits, several questions
// to a line, only answers that its checks leave alone, texts where they may stand. With `within`, lines end within
// questions too; then an empty one doesn't count where it is typed, and not every sheet is read back.
void MakeTypable(Random& random, Survey& survey, bool within = false);

// Up to `lines` condition lines, most of them sensible, some absurd: every kind, ranks, ranges, absent questions;
// sometimes a mask. Line 0 is the header.
std::array<LimitLine, 16> MakeRandomColumn(Random& random, const Survey& survey, int lines);

}  // namespace quibra
