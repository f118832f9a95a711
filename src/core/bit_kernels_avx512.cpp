#include "core/bit_kernels_body.h"

namespace quibra {

extern const BitKernels kBitKernelsAvx512;
const BitKernels kBitKernelsAvx512 = {"AVX-512", Transpose, Extract, CountChoices, CountMask, TestFlags};

}  // namespace quibra
