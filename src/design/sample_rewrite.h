// Writes all samples anew behind an edited definition. What becomes of one sample is told step by step: its answers are
// read by the old definition, renumbered, cut to the room that the new one has, checked as a typed sheet is
// (entry/answer_check.h), stored, and checked against the conditions of the questions. The same comes about here for
// blocks of samples: answers in which no check can find anything are moved as bits, and only the others take the steps.
#pragma once

#include <functional>

#include "core/sample_change.h"
#include "core/sample_planes.h"
#include "design/renumbering.h"

namespace quibra {

// By block of kBlockSamples samples: those that may have become something else than the maps make of them.
using TouchedSamples = std::vector<BlockMask>;

// Fills `target.Samples` with the samples of `source`, which has the definition and layout that they are stored by.
// `target` has the edited definition with its layout, the policy of CorrectFlags, and the predefined conditions that
// make PreLimitBits; nobody else uses it meanwhile. `goOn` is called every few milliseconds with the number of samples
// done; false from it stops the work, and is the result. std::bad_alloc for want of memory.
bool RewriteSamples(const Survey& source, const StructureMaps& maps, Survey& target, TouchedSamples& touched,
                    const std::function<bool(qint32 done)>& goOn);

// Tells `change`, which covers the rewrite, what it has made of which sample. `turn` is called every few milliseconds
// while somebody listens.
void RecordRewrite(const Survey& source, const StructureMaps& maps, const Survey& target, const TouchedSamples& touched,
                   SampleChange& change, const std::function<void()>& turn);

}  // namespace quibra
