// A survey as JSON: the field names of the data model, numbers counting from 0, conditions as [a, b] pairs.
#pragma once

#include <QString>
#include <functional>

#include "core/survey.h"

class QIODevice;

namespace quibra {

// Writes the survey as one JSON object, sample by sample, without holding more than one of them as text. `tick` is
// called after each sample with its number from 1; false stops the writing. RuntimeError when the device fails.
void WriteSurveyJson(const Survey& survey, QIODevice& out, bool withSamples,
                     const std::function<bool(qint32)>& tick = nullptr);

// Reads such an object into `survey`, which is a new one to start with; keys may come in any order, absent ones keep
// their defaults, "Samples" may be absent. The device must be seekable: the samples are read in a second pass. Throws
// RuntimeError whose text says what is wrong with which key.
void ReadSurveyJson(QIODevice& in, Survey& survey);

}  // namespace quibra
