// The samples of a survey, lying flat: the packed answers of all samples are one block with a fixed stride, IDs and
// PreLimitBits are arrays beside it, texts are held only for samples that have one. A sample without texts costs its
// packed bytes and 14 more.
//
// Owned by Survey. Pointers from Bits() hold until the next call that inserts, removes or moves samples.
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace quibra {

// The texts of one sample by slot, ascending. Only non-empty ones are held.
struct Essay {
    qint16 slot;
    QString text;
};
using EssayList = std::vector<Essay>;

// Memory for packed answers, 64-byte aligned, with at least 64 readable bytes behind the end so that wide loads at the
// last sample stay inside. New bytes are zero.
class PackedBlock {
  public:
    PackedBlock() = default;
    PackedBlock(const PackedBlock& other);
    PackedBlock(PackedBlock&& other) noexcept = default;
    PackedBlock& operator=(PackedBlock other) noexcept;

    // Resizes to `size` bytes, keeping the contents; growth is geometric unless `exact`. std::bad_alloc on failure.
    void Resize(size_t size, bool exact = false);
    unsigned char* Data() { return data_; }
    const unsigned char* Data() const { return data_; }

  private:
    struct Free {
        void operator()(unsigned char* memory) const;
    };
    std::unique_ptr<unsigned char, Free> memory_;
    unsigned char* data_ = nullptr;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

class SampleList {
  public:
    SampleList() = default;
    SampleList(const SampleList& other);
    SampleList(SampleList&&) noexcept = default;
    SampleList& operator=(SampleList other) noexcept;

    // Drops all samples and sets what one consists of: `sampleBytes` of packed answers (even), `essaySlots` texts.
    void SetLayout(int sampleBytes, int essaySlots);
    // Makes `count` zeroed samples at once, dropping what there was. Memory is taken for them in one piece.
    void Allocate(qint32 count);

    qint32 Count() const { return static_cast<qint32>(ids_.size()); }
    int SampleBytes() const { return stride_; }
    int EssaySlots() const { return essaySlots_; }

    // All below: run-time error 9 for a `dno` outside 0 to Count() - 1 or a slot outside 0 to EssaySlots().
    qint32 IDno(qint32 dno) const { return ids_[Checked(dno)]; }
    void SetIDno(qint32 dno, qint32 id) { ids_[Checked(dno)] = id; }
    qint16 PreLimitBits(qint32 dno) const { return flags_[Checked(dno)]; }
    void SetPreLimitBits(qint32 dno, qint16 bits) { flags_[Checked(dno)] = bits; }
    qint16* Bits(qint32 dno) { return reinterpret_cast<qint16*>(block_.Data() + Checked(dno) * stride_); }
    const qint16* Bits(qint32 dno) const {
        return reinterpret_cast<const qint16*>(block_.Data() + Checked(dno) * stride_);
    }
    QString Essay(qint32 dno, int slot) const;
    void SetEssay(qint32 dno, int slot, const QString& text);
    const EssayList& Essays(qint32 dno) const;
    // Takes a whole list, ascending by slot and without empty texts.
    void SetEssays(qint32 dno, EssayList essays);

    // An empty sample at `dno`, 0 to Count().
    void Insert(qint32 dno, qint32 id);
    void Erase(qint32 dno);
    // Takes the sample at `from` out and puts it back at `to`; those between shift by one.
    void Move(qint32 from, qint32 to);
    // `turn`, in both: called every few milliseconds. Of all that a list holds its texts take longest to free.
    void DropEssays(const std::function<void()>& turn);
    // Sample i becomes what sample order[i] was; `order` holds each number once.
    void Reorder(
        const std::vector<qint32>& order, const std::function<void()>& turn = [] {});

    // The arrays themselves, for loops over blocks of samples: `count` samples from `dno` on lie behind each pointer.
    const qint32* IDs() const { return ids_.data(); }
    const qint16* Flags() const { return flags_.data(); }
    const unsigned char* Packed(qint32 dno) const { return block_.Data() + static_cast<size_t>(dno) * stride_; }
    unsigned char* Packed(qint32 dno) { return block_.Data() + static_cast<size_t>(dno) * stride_; }
    qint32* IDs() { return ids_.data(); }
    qint16* Flags() { return flags_.data(); }

  private:
    size_t Checked(qint32 dno) const;
    void CheckSlot(int slot) const;

    int stride_ = 0;
    int essaySlots_ = 0;
    PackedBlock block_;
    std::vector<qint32> ids_;
    std::vector<qint16> flags_;
    std::vector<std::unique_ptr<EssayList>> essays_;
};

}  // namespace quibra
