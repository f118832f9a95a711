// The rewrite of samples as it is told: one sample after the other, through a work file, in two passes.
#pragma once

#include "design/renumbering.h"

namespace quibra {

// Gives `edited`, which has a definition and no samples, the samples of `loaded`.
void ToldRewrite(const Survey& loaded, const StructureMaps& maps, Survey& edited);

}  // namespace quibra
