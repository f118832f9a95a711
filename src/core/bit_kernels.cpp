#include "core/bit_kernels.h"

#include "core/bit_kernels_body.h"

namespace quibra {

namespace {

constexpr BitKernels kPortable = {"portable", Transpose, Extract, CountChoices, CountMask, TestFlags};

struct Usable {
    const BitKernels* kernels[3];
    size_t count;
};

}  // namespace

#ifdef QUIBRA_X86_KERNELS
extern const BitKernels kBitKernelsAvx2;
extern const BitKernels kBitKernelsAvx512;
#endif

std::span<const BitKernels* const> UsableBitKernels() {
    static const Usable usable = [] {
        Usable found = {{&kPortable}, 1};
#ifdef QUIBRA_X86_KERNELS
        if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt")) {
            found.kernels[found.count++] = &kBitKernelsAvx2;
            if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
                __builtin_cpu_supports("avx512vpopcntdq"))
                found.kernels[found.count++] = &kBitKernelsAvx512;
        }
#endif
        return found;
    }();
    return {usable.kernels, usable.count};
}

const BitKernels& FastestBitKernels() {
    return *UsableBitKernels().back();
}

}  // namespace quibra
