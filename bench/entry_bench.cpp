// The checks of answers over a million samples, beside reading their answers one sample at a time, and the answer
// sheet.
#include <benchmark/benchmark.h>

#include "core/answer_store.h"
#include "entry/answer_check.h"
#include "entry/answer_scan.h"
#include "entry/sheet_parser.h"
#include "entry/sheet_text.h"
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
Survey FullSheet() {
    Survey survey;
    NewSurveyHead(survey, QString());
    NewSurveyBody(survey);
    survey.QuestionCount = 255;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        survey.Questions[q].SetText(u"質問%1\r\r\r"_s.arg(q + 1));
        survey.Questions[q].Anum = 4;
        survey.Questions[q].ChoiceCount = 6;
        for (int c = 1; c < 6; ++c)
            survey.Choices(c, q).Status = 1;
        survey.LineStart[q] = PackPosition(q, 0);
    }
    survey.LineStart[255] = survey.LineStart[256] = PackPosition(255, 0);
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    survey.Samples.Insert(0, 1);
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const std::array<qint16, 4> answers = {1, 2, 3, 4};
        const std::array<QString, 4> texts = {u"自由に書いた回答"_s, u"もう一つ"_s, u"三つめ"_s, u"これで終わり"_s};
        SetAnswersEssay(survey, 0, q, 4, answers.data(), texts.data());
    }
    return survey;
}

void ParseAndBuildFullSheet(benchmark::State& state) {
    Survey survey = FullSheet();
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
