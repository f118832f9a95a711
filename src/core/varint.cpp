#include "core/varint.h"

namespace quibra {

void AppendNumber(QByteArray& bytes, qint64 value) {
    auto rest = static_cast<quint64>(value) << 1 ^ static_cast<quint64>(value >> 63);
    for (; rest >= 0x80; rest >>= 7)
        bytes.append(static_cast<char>((rest & 0x7f) | 0x80));
    bytes.append(static_cast<char>(rest));
}

std::optional<qint64> TakeNumber(QByteArrayView& bytes) {
    quint64 value = 0;
    for (int shift = 0; shift < 64 && !bytes.isEmpty(); shift += 7) {
        const auto byte = static_cast<unsigned char>(bytes.front());
        bytes = bytes.sliced(1);
        value |= static_cast<quint64>(byte & 0x7f) << shift;
        if (!(byte & 0x80)) return static_cast<qint64>(value >> 1 ^ (~(value & 1) + 1));
    }
    return std::nullopt;
}

}  // namespace quibra
