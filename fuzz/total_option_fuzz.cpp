// Any bytes as the description of a total: they are refused, or totalled and written in every form, and say the same
// again when the description is written and read back.
#include <cstdlib>

#include "tabulation/html_result.h"
#include "tabulation/sheet_rig.h"
#include "tabulation/total_json.h"

using namespace quibra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static SurveyBuilder builder = FruitSurvey();
    const Survey& survey = builder.Get();
    const QByteArray json(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        const TotalOption option = ReadTotalOptionJson(json, survey);
        const QByteArray written = WriteTotalOptionJson(option);
        if (WriteTotalOptionJson(ReadTotalOptionJson(written, survey)) != written) std::abort();
        SheetRig rig(survey);
        rig.sheet.DoTotal(option);
        if (WriteHtml(survey, rig.sheet.result, rig.sheet.view, rig.sheet.grid).isEmpty()) std::abort();
        if ((option.TotalKind == kTable ? WriteTotalJson(survey, rig.sheet.result) : WriteEssayJson(rig.sheet.result))
                .isEmpty())
            std::abort();
    } catch (const RuntimeError&) {
    }
    return 0;
}
