#include "core/sample_list.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <sys/mman.h>

#include "core/bounded_array.h"

namespace quibra {

namespace {

constexpr size_t kAlignment = 64;
constexpr size_t kReadableTail = 64;
constexpr size_t kPageBytes = 4096;
constexpr size_t kLargeBlock = 4 << 20;

// The first of a sample's texts at or behind the slot.
template <typename List>
auto PlaceOf(List& list, int slot) {
    return std::lower_bound(list.begin(), list.end(), slot,
                            [](const Essay& essay, int wanted) { return essay.slot < wanted; });
}
// So many samples take a few milliseconds, whatever is done to them.
constexpr size_t kSamplesATurn = size_t{1} << 15;

}  // namespace

void PackedBlock::Free::operator()(unsigned char* memory) const {
    std::free(memory);
}

PackedBlock::PackedBlock(const PackedBlock& other) {
    Resize(other.size_, true);
    if (size_ > 0) std::memcpy(data_, other.data_, size_);
}

PackedBlock& PackedBlock::operator=(PackedBlock other) noexcept {
    std::swap(memory_, other.memory_);
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
}

void PackedBlock::Resize(size_t size, bool exact) {
    if (size <= capacity_) {
        if (size > size_) std::memset(data_ + size_, 0, size - size_);
        size_ = size;
        return;
    }
    const size_t capacity = exact ? size : std::max(size, capacity_ + capacity_ / 2);
    // calloc takes large blocks from the kernel already zeroed, so that a survey about to be read is not written twice.
    std::unique_ptr<unsigned char, Free> memory(
        static_cast<unsigned char*>(std::calloc(capacity + kAlignment + kReadableTail, 1)));
    if (!memory) throw std::bad_alloc();
    const auto address = reinterpret_cast<uintptr_t>(memory.get());
    unsigned char* data = memory.get() + (kAlignment - address % kAlignment) % kAlignment;
    // Walking a large block costs a third less when it lies in large pages. Only advice: no matter when it fails.
    const uintptr_t page = (address + kPageBytes - 1) / kPageBytes * kPageBytes;
    if (capacity >= kLargeBlock) madvise(reinterpret_cast<void*>(page), capacity - kPageBytes, MADV_HUGEPAGE);
    if (size_ > 0) std::memcpy(data, data_, size_);
    memory_ = std::move(memory);
    data_ = data;
    size_ = size;
    capacity_ = capacity;
}

SampleList::SampleList(const SampleList& other)
    : stride_(other.stride_),
      essaySlots_(other.essaySlots_),
      block_(other.block_),
      ids_(other.ids_),
      flags_(other.flags_),
      essays_(other.essays_.size()) {
    for (size_t i = 0; i < essays_.size(); ++i)
        if (other.essays_[i]) essays_[i] = std::make_unique<EssayList>(*other.essays_[i]);
}

SampleList& SampleList::operator=(SampleList other) noexcept {
    std::swap(stride_, other.stride_);
    std::swap(essaySlots_, other.essaySlots_);
    block_ = std::move(other.block_);
    ids_.swap(other.ids_);
    flags_.swap(other.flags_);
    essays_.swap(other.essays_);
    return *this;
}

size_t SampleList::Checked(qint32 dno) const {
    CheckSubscript(dno, Count());
    return static_cast<size_t>(dno);
}

void SampleList::CheckSlot(int slot) const {
    CheckSubscript(slot, essaySlots_ + 1);
}

void SampleList::SetLayout(int sampleBytes, int essaySlots) {
    *this = SampleList();
    stride_ = sampleBytes;
    essaySlots_ = essaySlots;
}

void SampleList::Allocate(qint32 count) {
    SetLayout(stride_, essaySlots_);
    const auto samples = static_cast<size_t>(count);
    block_.Resize(samples * static_cast<size_t>(stride_), true);
    ids_.resize(samples);
    flags_.resize(samples);
    essays_.resize(samples);
}

QString SampleList::Essay(qint32 dno, int slot) const {
    CheckSlot(slot);
    const EssayList& list = Essays(dno);
    const auto place = PlaceOf(list, slot);
    return place != list.end() && place->slot == slot ? place->text : QString();
}

void SampleList::SetEssay(qint32 dno, int slot, const QString& text) {
    CheckSlot(slot);
    auto& list = essays_[Checked(dno)];
    if (slot == essaySlots_ || (!list && text.isEmpty())) return;
    if (!list) list = std::make_unique<EssayList>();
    const auto place = PlaceOf(*list, slot);
    const bool there = place != list->end() && place->slot == slot;
    if (text.isEmpty()) {
        if (there) list->erase(place);
        if (list->empty()) list.reset();
    } else if (there) {
        place->text = text;
    } else {
        list->insert(place, {static_cast<qint16>(slot), text});
    }
}

const EssayList& SampleList::Essays(qint32 dno) const {
    static const EssayList kNone;
    const auto& list = essays_[Checked(dno)];
    return list ? *list : kNone;
}

void SampleList::SetEssays(qint32 dno, EssayList essays) {
    auto& list = essays_[Checked(dno)];
    if (essays.empty())
        list.reset();
    else
        list = std::make_unique<EssayList>(std::move(essays));
}

void SampleList::Insert(qint32 dno, qint32 id) {
    CheckSubscript(dno, Count() + 1);
    const auto at = static_cast<size_t>(dno);
    const auto stride = static_cast<size_t>(stride_);
    const size_t behind = (ids_.size() - at) * stride;
    block_.Resize((ids_.size() + 1) * stride);
    unsigned char* row = Packed(dno);
    std::memmove(row + stride, row, behind);
    std::memset(row, 0, stride);
    ids_.insert(ids_.begin() + dno, id);
    flags_.insert(flags_.begin() + dno, 0);
    essays_.insert(essays_.begin() + dno, nullptr);
}

void SampleList::Erase(qint32 dno) {
    const size_t at = Checked(dno);
    const auto stride = static_cast<size_t>(stride_);
    unsigned char* row = Packed(dno);
    std::memmove(row, row + stride, (ids_.size() - at - 1) * stride);
    ids_.erase(ids_.begin() + dno);
    flags_.erase(flags_.begin() + dno);
    essays_.erase(essays_.begin() + dno);
    block_.Resize(ids_.size() * stride);
}

void SampleList::Move(qint32 from, qint32 to) {
    Checked(from);
    Checked(to);
    // The one record goes round, the others shift by one place.
    const auto rotate = [&](auto begin, auto scale) {
        using Difference = typename std::iterator_traits<decltype(begin)>::difference_type;
        const auto at = [&](qint32 dno) { return begin + static_cast<Difference>(dno) * scale; };
        if (from < to)
            std::rotate(at(from), at(from + 1), at(to + 1));
        else
            std::rotate(at(to), at(from), at(from + 1));
    };
    rotate(block_.Data(), stride_);
    rotate(ids_.begin(), 1);
    rotate(flags_.begin(), 1);
    rotate(essays_.begin(), 1);
}

void SampleList::DropEssays(const std::function<void()>& turn) {
    for (size_t dno = 0; dno < essays_.size(); ++dno) {
        essays_[dno].reset();
        if (dno % kSamplesATurn == 0) turn();
    }
}

void SampleList::Reorder(const std::vector<qint32>& order, const std::function<void()>& turn) {
    CheckSubscript(static_cast<qint64>(order.size()) - 1, Count() + 1);
    SampleList sorted;
    sorted.SetLayout(stride_, essaySlots_);
    sorted.Allocate(Count());
    for (qint32 i = 0; i < Count(); ++i) {
        const size_t from = Checked(order[static_cast<size_t>(i)]);
        const auto to = static_cast<size_t>(i);
        std::memcpy(sorted.Packed(i), Packed(order[to]), static_cast<size_t>(stride_));
        sorted.ids_[to] = ids_[from];
        sorted.flags_[to] = flags_[from];
        sorted.essays_[to] = std::move(essays_[from]);
        if (to % kSamplesATurn == 0) turn();
    }
    *this = std::move(sorted);
}

}  // namespace quibra
