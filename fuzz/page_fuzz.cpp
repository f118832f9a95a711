// Any bytes as a page file: refused, or totalled and dumped.
#include <cstdint>

#include "core/binary_file.h"
#include "core/survey_reader.h"
#include "tabulation/page_file.h"
#include "tabulation/sheet_rig.h"

using namespace quibra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static SurveyBuilder builder = FruitSurvey();
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    try {
        ByteReader in(bytes);
        DumpPage(in);
    } catch (const RuntimeError&) {
    }
    try {
        ByteReader in(bytes);
        if (ReadMagic(in) != kPageFile) return 0;
        ReadDoubleLen(in);
        SheetRig rig(builder.Get());
        TotalOption option;
        ReadPage(in, builder.Get(), option, rig.sheet.view);
        rig.sheet.DoTotal(option);
    } catch (const RuntimeError&) {
    }
    return 0;
}
