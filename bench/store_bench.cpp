// The sample list: looking an ID up among a million.
#include <benchmark/benchmark.h>

#include <random>

#include "core/answer_store.h"
#include "synthetic_survey.h"

namespace quibra {
namespace {

// range(0): the IDs lie this far apart at the most; 1 is the run of numbers that a survey usually holds.
void LookUpID(benchmark::State& state) {
    Survey survey = SyntheticSurvey();
    std::mt19937 random(7);
    qint32 id = 0;
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
        id += 1 + static_cast<qint32>(random() % static_cast<unsigned>(state.range(0)));
        survey.Samples.SetIDno(dno, id);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(DnoOfID(survey, static_cast<qint32>(random() % static_cast<unsigned>(id))));
}
BENCHMARK(LookUpID)->Arg(1)->Arg(1000)->Unit(benchmark::kNanosecond);

}  // namespace
}  // namespace quibra
