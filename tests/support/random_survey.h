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

// Up to `lines` condition lines, most of them sensible, some absurd: every kind, ranks, ranges, absent questions;
// sometimes a mask. Line 0 is the header.
std::array<LimitLine, 16> MakeRandomColumn(Random& random, const Survey& survey, int lines);

}  // namespace quibra
