// Whole numbers in as few bytes as they need: seven bits a byte from the lowest on, the eighth set while more follow;
// the sign goes into the lowest bit.
#pragma once

#include <QByteArray>
#include <optional>

namespace quibra {

void AppendNumber(QByteArray& bytes, qint64 value);
// Takes a number off the front of `bytes`; nothing when there is no whole one.
std::optional<qint64> TakeNumber(QByteArrayView& bytes);

}  // namespace quibra
