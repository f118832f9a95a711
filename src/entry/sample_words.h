// A sample in words: what the sample viewer shows and quibra-cli prints.
#pragma once

#include <QString>

#include "core/survey.h"

namespace quibra {

// The answers of sample `dno` to the questions from `fromQ` up to, not including, `endQ`: a line for each question,
// with `bodies` two and an empty one. Lines end in CR LF. A question that doesn't apply reads so, whatever is stored
// for it.
QString SampleWords(const Survey& survey, qint32 dno, int fromQ, int endQ, bool bodies);

}  // namespace quibra
