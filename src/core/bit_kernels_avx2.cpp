#include "core/bit_kernels_body.h"

namespace quibra {

extern const BitKernels kBitKernelsAvx2;
const BitKernels kBitKernelsAvx2 = {"AVX2", Transpose, Extract, CountChoices, CountMask, TestFlags};

}  // namespace quibra
