// The checks of answers over a million samples, beside reading their answers one sample at a time, and the answer
// sheet.
#include <benchmark/benchmark.h>

#include "core/answer_store.h"
#include "entry/answer_check.h"
#include "entry/answer_scan.h"
#include "entry/sheet_parser.h"
#include "entry/sheet_text.h"
#include "entry_survey.h"
#include "silent_interface.h"
#include "synthetic_survey.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

// A tenth of the questions is asked of those who gave the first choice of the one before, and answers that break this
// are cleared, so that the checks have a world to find in order.
Survey& CheckedSurvey() {
    static Survey survey = [] {
        Survey made = SyntheticSurvey();
        made.CorrectFlags = 15;
        for (int q = 5; q < made.QuestionCount; q += 10)
            made.QLimit(1, q) = {3, PackPosition(q - 1, 1)};
        WorkingSample working(made);
        for (qint32 dno = 0; dno < made.SampleCount(); ++dno)
            CheckSample(made, dno, working, true, nullptr);
        return made;
    }();
    return survey;
}

void ReadAnswers(benchmark::State& state) {
    const Survey& survey = CheckedSurvey();
    WorkingSample working(survey);
    for (auto _ : state)
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
            GetAllAnswers(survey, dno, working.AnswerCount.data(), working.SlotCno.data());
}
BENCHMARK(ReadAnswers)->Unit(benchmark::kMillisecond)->UseRealTime();

void CheckOneByOne(benchmark::State& state) {
    Survey& survey = CheckedSurvey();
    WorkingSample working(survey);
    for (auto _ : state)
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
            if (CheckSample(survey, dno, working, true, nullptr)) state.SkipWithError("a sample was not in order");
}
BENCHMARK(CheckOneByOne)->Unit(benchmark::kMillisecond)->UseRealTime();

void CheckScanned(benchmark::State& state) {
    Survey& survey = CheckedSurvey();
    for (auto _ : state) {
        AnswerScan scan(survey, true);
        scan.ForEachSuspect([&](qint32) { state.SkipWithError("a sample was not in order"); });
    }
}
BENCHMARK(CheckScanned)->Unit(benchmark::kMillisecond)->UseRealTime();

// 255 questions of four answers, each with a text.
void ParseAndBuildFullSheet(benchmark::State& state) {
    Survey survey = MakeEntrySurvey(255, 4, 1);
    SilentInterface ui;
    CodeTables tables;
    const SheetLook look = SheetLookOf(SettingsDefault());
    const SheetText sheet = BuildAnswerSheet(survey, 0, survey.QuestionCount, 0, look, -1, QString());
    for (auto _ : state) {
        SheetReading reading;
        reading.Text = sheet.Text;
        if (!ParseAnswerSheet(survey, 0, reading, true, {ui, tables}).isEmpty()) state.SkipWithError("not read");
        benchmark::DoNotOptimize(
            BuildAnswerSheet(survey, 0, reading.StopQ, reading.StopA, look, reading.CaretQ, QString()));
    }
}
BENCHMARK(ParseAndBuildFullSheet)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quibra
