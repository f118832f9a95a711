#include "core/sample_planes.h"

namespace quibra {

namespace {

// A transposition of a chunk costs about as much as this many fields made one by one.
constexpr int kFieldsOfChunk = 8;

}  // namespace

SamplePlanes::SamplePlanes(const Survey& survey, int fields, const BitKernels& kernels)
    : survey_(survey), kernels_(kernels) {
    const int chunks = (survey.SampleBytes + kChunkBytes - 1) / kChunkBytes;
    planes_.resize(static_cast<size_t>(chunks) * kChunkBits * kPlaneWords);
    whole_ = fields > chunks * kFieldsOfChunk;
    made_.resize(static_cast<size_t>(whole_ ? chunks : chunks * kChunkBits));
}

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
    const unsigned char* records = survey_.Samples.Packed(first_);
    const auto stride = static_cast<size_t>(survey_.Samples.SampleBytes());
    uint64_t* field = planes_.data() + static_cast<size_t>(bitStart) * kPlaneWords;
    const auto unmade = [this](int index) {
        const bool was = made_[static_cast<size_t>(index)];
        made_[static_cast<size_t>(index)] = true;
        return !was;
    };
    if (!whole_) {
        if (unmade(bitStart)) kernels_.extract(records, stride, count_, bitStart, width, field);
        return field;
    }
    for (int chunk = bitStart / kChunkBits; chunk <= (bitStart + width - 1) / kChunkBits; ++chunk)
        if (unmade(chunk))
            kernels_.transpose(records + chunk * kChunkBytes, stride, count_,
                               planes_.data() + static_cast<size_t>(chunk) * kChunkBits * kPlaneWords);
    return field;
}

}  // namespace quibra
