#include "core/numbers.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

bool IsDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

qsizetype SkipDigits(QStringView text, qsizetype at) {
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return at;
}

double RoundToRange(double value, double low, double high) {
    const double rounded = std::nearbyint(value);  // half to even, the default rounding of the machine
    if (!(rounded >= low && rounded <= high)) throw RuntimeError(kErrorOverflow);
    return rounded;
}

}  // namespace

QString NumberText(double value) {
    return value == 0 ? u"0"_s : QString::number(value, 'g', 15).toUpper();
}

double LeadingNumber(QStringView text) {
    qsizetype start = 0;
    while (start < text.size() && (text[start] == u' ' || text[start] == u'\t' || text[start] == u'\n'))
        ++start;
    qsizetype at = start;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) ++at;
    const qsizetype digits = at;
    at = SkipDigits(text, at);
    qsizetype digitCount = at - digits;
    if (at < text.size() && text[at] == u'.') {
        const qsizetype fraction = at + 1;
        at = SkipDigits(text, fraction);
        digitCount += at - fraction;
    }
    if (digitCount == 0) return 0;

    QString number = text.mid(start, at - start).toString();
    if (at < text.size() && QStringView(u"EeDd").contains(text[at])) {
        qsizetype exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == u'+' || text[exponent] == u'-')) ++exponent;
        const qsizetype end = SkipDigits(text, exponent);
        if (end > exponent) number += u'e' + text.mid(at + 1, end - at - 1).toString();
    }
    // Infinite for what is too large, zero for what is too small; QByteArray would give zero for both.
    const double value = number.toDouble();
    if (!std::isfinite(value)) throw RuntimeError(kErrorOverflow);
    return value;
}

qint16 RoundToInt16(double value) {
    return static_cast<qint16>(
        RoundToRange(value, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max()));
}

qint32 RoundToInt32(double value) {
    return static_cast<qint32>(
        RoundToRange(value, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()));
}

}  // namespace quibra
