// Counting and testing: whole blocks of samples by each instruction set, against the companion library called for each
// sample. The counter "answers/s" is answers (times columns) a second, "samples/s" samples tested a second.
#include <benchmark/benchmark.h>

#include "conditions/block_condition.h"
#include "conditions/limit_lists.h"
#include "synthetic_survey.h"
#include "tabulation/essay_list.h"
#include "tabulation/table_counter.h"

namespace quibra {
namespace {

const BitKernels& KernelsOf(const benchmark::State& state) {
    const auto usable = UsableBitKernels();
    return *usable[std::min(static_cast<size_t>(state.range(0)), usable.size() - 1)];
}

void TestsPerSecond(benchmark::State& state, qint64 tests) {
    state.counters["answers/s"] =
        benchmark::Counter(static_cast<double>(tests), benchmark::Counter::kIsIterationInvariantRate);
}

qint64 SyntheticAnswers() {
    static const qint64 answers = AnswersOf(SyntheticSurvey());
    return answers;
}

// range(0): which kernels; range(1): columns.
void TotalByBlocks(benchmark::State& state) {
    const Survey& survey = SyntheticSurvey();
    const int columns = static_cast<int>(state.range(1));
    const TotalOption option = AllQuestions(survey, columns);
    state.SetLabel(KernelsOf(state).name);
    for (auto _ : state) {
        TableCounter counter(survey, option, KernelsOf(state));
        counter.CountTo(survey.SampleCount());
        benchmark::DoNotOptimize(counter.Count(0, 0, survey.SampleCount()));
    }
    TestsPerSecond(state, SyntheticAnswers() * columns);
}
BENCHMARK(TotalByBlocks)->ArgsProduct({{0, 1, 2}, {1, 10, 30}})->Unit(benchmark::kMillisecond);

// One question by the choices of another, which name the same fields in every column.
void CrossOfTwoQuestions(benchmark::State& state) {
    const Survey& survey = SyntheticSurvey();
    TotalOption option;
    option.FromQno = option.ToQno = 10;
    SetCrossQuestion(option, survey, 30);
    for (auto _ : state) {
        TableCounter counter(survey, option);
        counter.CountTo(survey.SampleCount());
        benchmark::DoNotOptimize(counter.Count(10, 0, survey.SampleCount()));
    }
}
BENCHMARK(CrossOfTwoQuestions)->Unit(benchmark::kMillisecond);

// A word that nobody wrote, looked for in the texts of a million samples, of which a third have one.
void WordSearch(benchmark::State& state) {
    static const Survey survey = MakeSyntheticSurvey(kMillion, true);
    TotalOption option;
    option.TotalKind = kEssayList;
    option.CrossMode = kEssayHolds;
    option.CrossQno = survey.Questions[0].ChoiceCount;
    option.EssayText = QStringLiteral("ない語");
    const LimitList everybody = JoinLimits({option.Limits.Column(0)});
    std::vector<EssayHit> hits;
    for (auto _ : state) {
        int found = 0;
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
            found += EssayMatch(survey, dno, option, everybody, hits);
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(WordSearch)->Unit(benchmark::kMillisecond);

// The same figures by VerstTotalC. range(0): columns.
void TotalBySamples(benchmark::State& state) {
    const Survey& survey = SyntheticSurvey();
    const int columns = static_cast<int>(state.range(0));
    const TotalOption option = AllQuestions(survey, columns);
    for (auto _ : state)
        for (int L = 0; L < columns; ++L) {
            const LimitList list(option.Limits.Column(L + 1));
            for (int q = 0; q < survey.QuestionCount; ++q) {
                Figures figures;
                for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
                    figures.persons += VerstTotalC(list.Data(), survey.QIdx.Data(), survey.Samples.Flags()[dno],
                                                   survey.Samples.Bits(dno), q, figures.counts, 0);
                benchmark::DoNotOptimize(figures);
            }
        }
    TestsPerSecond(state, SyntheticAnswers() * columns);
}
BENCHMARK(TotalBySamples)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);

void SamplesPerSecond(benchmark::State& state) {
    state.counters["samples/s"] =
        benchmark::Counter(SyntheticSurvey().SampleCount(), benchmark::Counter::kIsIterationInvariantRate);
}

void ConditionByBlocks(benchmark::State& state) {
    const Survey& survey = SyntheticSurvey();
    const BlockCondition condition(survey, ThreeTerms());
    SamplePlanes planes(survey, condition.FieldCount(), KernelsOf(state));
    state.SetLabel(KernelsOf(state).name);
    for (auto _ : state)
        for (qint32 first = 0; first < survey.SampleCount(); first += kBlockSamples) {
            planes.Load(first, std::min<qint32>(survey.SampleCount() - first, kBlockSamples));
            BlockMask mask = planes.Valid();
            condition.Restrict(planes, mask);
            benchmark::DoNotOptimize(mask);
        }
    SamplesPerSecond(state);
}
BENCHMARK(ConditionByBlocks)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void ConditionBySamples(benchmark::State& state) {
    const Survey& survey = SyntheticSurvey();
    const LimitList list = ThreeTerms();
    for (auto _ : state) {
        qint32 met = 0;
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
            met += TestLimit(survey, dno, list);
        benchmark::DoNotOptimize(met);
    }
    SamplesPerSecond(state);
}
BENCHMARK(ConditionBySamples)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quibra
