#include "core/sample_change_record.h"

#include "core/varint.h"

namespace quibra {

namespace {

// The next name behind one with the ID `last`: the difference of the IDs times two, and with a 1 added to it the life
// behind it, when that is not 0.
void AppendName(QByteArray& bytes, SampleName name, qint64 last) {
    AppendNumber(bytes, (name.IDno - last) * 2 + (name.Life != 0));
    if (name.Life != 0) AppendNumber(bytes, name.Life);
}

std::optional<SampleName> TakeName(QByteArrayView& bytes, qint64 last) {
    const auto is32 = [](qint64 value) { return static_cast<qint32>(value) == value; };
    const auto step = TakeNumber(bytes);
    if (!step) return std::nullopt;
    const std::optional<qint64> life = *step & 1 ? TakeNumber(bytes) : 0;
    const qint64 id = last + (*step >> 1);
    if (!life || !is32(*life) || !is32(id)) return std::nullopt;
    return SampleName{static_cast<qint32>(id), static_cast<qint32>(*life)};
}

}  // namespace

void SampleNames::Add(SampleName name) {
    AppendName(bytes_, name, last_);
    last_ = name.IDno;
    ++count_;
}

void SampleNames::ForEach(const std::function<void(SampleName)>& visit) const {
    QByteArrayView rest = bytes_;
    SampleName name;
    while (!rest.isEmpty()) {
        name = *TakeName(rest, name.IDno);
        visit(name);
    }
}

bool SampleNames::SetBytes(QByteArrayView bytes, qint64 count) {
    QByteArrayView rest = bytes;
    qint64 last = 0;
    for (qint64 i = 0; i < count; ++i) {
        const auto name = TakeName(rest, last);
        if (!name) return false;
        last = name->IDno;
    }
    if (!rest.isEmpty()) return false;
    bytes_ = bytes.toByteArray();
    count_ = count;
    last_ = last;
    return true;
}

bool SampleChangeRecord::IsEmpty() const {
    return !Rewrite && Deleted.Count() == 0 && Renamed.empty() && Added.Count() == 0 && Answers.empty();
}

}  // namespace quibra
