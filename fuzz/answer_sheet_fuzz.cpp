// Any text typed as an answer sheet: read, refused or a run-time error. What is stored obeys the rules of the
// questions, and its own sheet can be built and read again.
#include "core/answer_store.h"
#include "entry/sheet_parser.h"
#include "entry/sheet_text.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"

using namespace quibra;

namespace {

void Require(bool held) {
    if (!held) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 3) return 0;
    Random random(bytes[0]);
    Survey survey = MakeRandomSurvey(random, 12, 1);
    MakeTypable(random, survey, bytes[1] & 16);
    survey.CorrectFlags = bytes[1] & 15;
    const QString text = QString::fromUtf8(QByteArrayView(bytes + 3, static_cast<qsizetype>(size - 3)));

    ScriptedInterface ui;
    CodeTables tables;
    SheetReading reading;
    reading.Text = text;
    reading.Caret = bytes[2];
    try {
        const QString message = ParseAnswerSheet(survey, 0, reading, true, {ui, tables});
        if (!message.isEmpty() && message != kExecuteDll) return 0;
    } catch (const RuntimeError&) {
        return 0;
    }
    Require(reading.StopQ >= 0 && reading.StopQ <= survey.QuestionCount);
    WorkingSample working(survey);
    GetAllAnswersEssay(survey, 0, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
    Require(!CorrectAnswers(survey, working, true, nullptr));
    const SheetLook look = SheetLookOf(SettingsDefault());
    const SheetText sheet = BuildAnswerSheet(survey, 0, reading.StopQ, reading.StopA, look, reading.CaretQ, text);
    qint32 end = 0;
    for (const SheetRun& run : SheetRuns(sheet)) {
        Require(run.start == end && run.length > 0);
        end += run.length;
    }
    Require(end == sheet.Text.size());
    SheetRtf(sheet, look);
    return 0;
}
