// Numbers in texts, and the checked 16-bit arithmetic of the survey's counters.
#pragma once

#include <QString>
#include <limits>

#include "core/runtime_error.h"

namespace quibra {

// The default general number format: up to 15 significant digits, no trailing zeros, scientific from 1E+15 on and
// below 0.0001 (0.00001 is "1E-05"). Zero of either sign is "0".
QString NumberText(double value);

// The leading number of a text; 0 when it starts with none. Blanks, tabs and line feeds in front are skipped; then
// sign, digits, one point and an exponent with E or D. A number beyond a 64-bit float is an overflow (run-time error
// 6).
double LeadingNumber(QStringView text);

// Rounds half to even and checks the range: the conversion of a number to a 16-bit or 32-bit integer (run-time error
// 6).
qint16 RoundToInt16(double value);
qint32 RoundToInt32(double value);

// A 16-bit counter's new value, or run-time error 6.
inline qint16 CheckedInt16(qint64 value) {
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        throw RuntimeError(kErrorOverflow);
    return static_cast<qint16>(value);
}

inline qint32 CheckedInt32(qint64 value) {
    if (value < std::numeric_limits<qint32>::min() || value > std::numeric_limits<qint32>::max())
        throw RuntimeError(kErrorOverflow);
    return static_cast<qint32>(value);
}

// How many steps of a long operation pass between two reports of progress: the whole part of count / reports + 1.
inline qint32 ReportInterval(qint32 count, int reports) {
    return count / reports + 1;
}

// True at the steps that report, `step` counting from 0 and `count` being how many there are.
inline bool IsReportStep(qint32 step, qint32 count, int reports) {
    return (step + 1) % ReportInterval(count, reports) == 0 || step + 1 == count;
}

}  // namespace quibra
