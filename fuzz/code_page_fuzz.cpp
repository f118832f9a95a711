// Any bytes as text of the code page, and any text out to it: what was read comes back, apart from what is damaged.
// The same text is read as a number, which comes back within its 15 digits.
#include "core/code_page.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "core/numbers.h"

using namespace quibra;

namespace {

void Require(bool claim) {
    if (!claim) std::abort();
}

void CheckNumber(const QString& text) {
    double value = 0;
    try {
        value = LeadingNumber(text);
    } catch (const RuntimeError& error) {
        Require(error.Number() == kErrorOverflow);
        return;
    }
    // The largest numbers round up beyond the range, the smallest have fewer digits.
    if (std::abs(value) > 1e308 || std::abs(value) < 1e-290) return;
    const double back = LeadingNumber(NumberText(value));
    Require(std::abs(back - value) <= std::abs(value) * 5.1e-15);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString text = DecodeCodePage(bytes);
    Require(text.size() <= bytes.size());
    const QByteArray written = EncodeCodePage(text);
    text.replace(QChar::ReplacementCharacter, u'?');
    Require(DecodeCodePage(written) == text);
    Require(EncodeCodePage(text) == written);
    CheckNumber(text);

    QString utf16(static_cast<qsizetype>(size / 2), Qt::Uninitialized);
    if (!utf16.isEmpty()) std::memcpy(utf16.data(), data, size / 2 * 2);
    const QByteArray out = EncodeCodePage(utf16);
    Require(out.size() <= utf16.size() * 2);
    Require(!DecodeCodePage(out).contains(QChar::ReplacementCharacter));
    Require(EncodeCodePage(DecodeCodePage(out)) == out);
    return 0;
}
