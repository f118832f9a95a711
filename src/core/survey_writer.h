// Writes a survey as the bytes of the current generation, in their order; docs/FILE_FORMAT.md tells them. Knows nothing
// of the user beyond the reports of its progress.
#pragma once

#include <span>

#include "core/binary_file.h"
#include "core/survey.h"
#include "core/survey_reader.h"

namespace quibra {

// Lead word and magic of a file kind. False, and only the lead word, for a kind that is not written any more.
bool WriteMagic(ByteWriter& out, int code);

// Everything behind the magic. `selection` holds the places of the samples to write, without one all are written. At
// most 100 reports while the questions are written, 50 for the samples. False when stopped. Run-time error 6 for a text
// of more than 32767 bytes, 9 for a place outside the list or a line list without an end.
bool WriteSurvey(ByteWriter& out, const Survey& survey, const std::vector<qint32>* selection,
                 const ProgressReport& report);

}  // namespace quibra
