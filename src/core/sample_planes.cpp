#include "core/sample_planes.h"

namespace quibra {

SamplePlanes::SamplePlanes(const Survey& survey, const BitKernels& kernels)
    : survey_(survey),
      kernels_(kernels),
      planes_(static_cast<size_t>((survey.SampleBytes + kChunkBytes - 1) / kChunkBytes) * kChunkBits * kPlaneWords),
      made_(static_cast<size_t>((survey.SampleBytes + kChunkBytes - 1) / kChunkBytes)) {}

void SamplePlanes::Load(qint32 first, int count) {
    CheckSubscript(count - 1, kBlockSamples);
    CheckSubscript(first + count - 1, survey_.SampleCount());
    first_ = first;
    count_ = count;
    made_.assign(made_.size(), false);
}

BlockMask SamplePlanes::Valid() const {
    BlockMask mask{};
    for (int w = 0; w < count_ / 64; ++w)
        mask[static_cast<size_t>(w)] = ~uint64_t{0};
    if (count_ % 64 != 0) mask[static_cast<size_t>(count_ / 64)] = (uint64_t{1} << count_ % 64) - 1;
    return mask;
}

const uint64_t* SamplePlanes::Field(int bitStart, int width) {
    for (int chunk = bitStart / kChunkBits; chunk <= (bitStart + width - 1) / kChunkBits; ++chunk) {
        const auto index = static_cast<size_t>(chunk);
        if (made_[index]) continue;
        made_[index] = true;
        kernels_.transpose(survey_.Samples.Packed(first_) + index * kChunkBytes,
                           static_cast<size_t>(survey_.Samples.SampleBytes()), count_,
                           planes_.data() + index * kChunkBits * kPlaneWords);
    }
    return planes_.data() + static_cast<size_t>(bitStart) * kPlaneWords;
}

}  // namespace quibra
