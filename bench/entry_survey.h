// A survey to key in: questions of `answers` answers to six choices, each with a text where there are several, a line
// for each; all samples are answered.
#pragma once

#include "core/survey.h"

namespace quibra {

Survey MakeEntrySurvey(int questions, int answers, qint32 samples);

}  // namespace quibra
