// Any bytes: refused, or a survey that from then on is written and read the same.
#include <cstdint>

#include "support/survey_bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const QString fault = quibra::RoundTripFault(bytes);
    if (!fault.isEmpty()) qFatal("%s", qPrintable(fault));
    return 0;
}
