// Finishing the question editor over a million samples of 60 questions. To be held against SaveSurvey, which writes the
// same samples to the disk.
#include <benchmark/benchmark.h>

#include <QDir>

#include "design/definition_editor.h"
#include "silent_interface.h"
#include "synthetic_survey.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

// Says OK to everything and inserts questions of five choices.
class AgreeingInterface : public SilentInterface {
  public:
    Answer Message(const QString&, int, const QString&) override { return Answer::Ok; }
    bool InputBox(const QString&, const QString&, const QString&, const QString&, QString& text) override {
        text = u"5"_s;
        return true;
    }
};

class AgreeingWindows : public DefinitionWindows {
  public:
    bool ChooseCorrection() override { return true; }
    LimitList EditLimit(const LimitList& list) override { return list; }
    void ShowProgress(const QString&) override {}
};

constexpr int kMiddle = 30;

using Edit = void (*)(DefinitionEditor&);

// The synthetic answers repeat choices within a question, which the checks take out of a real survey as it is keyed in.
// With `asMade` they are left to the rewrite that is measured, which then has millions of answers to correct.
void FinishEditor(benchmark::State& state, Edit edit, bool texts, bool asMade) {
    AgreeingInterface ui;
    AgreeingWindows windows;
    SurveySession session(ui, QDir::tempPath());
    session.survey = MakeSyntheticSurvey(kMillion, texts);
    session.Unlock();
    if (!asMade) {
        DefinitionEditor editor(session, windows);
        editor.SetStatus(kExclusive, true);
        editor.SetStatus(kExclusive, false);
        editor.Finish();
    }
    const Survey loaded = session.survey;
    for (auto _ : state) {
        state.PauseTiming();
        session.survey = loaded;
        session.Unlock();
        DefinitionEditor editor(session, windows);
        editor.SelectQuestion(kMiddle);
        edit(editor);
        state.ResumeTiming();
        if (editor.Finish() != EditorOutcome::Done) state.SkipWithError("not finished");
    }
}

void InsertQuestion(DefinitionEditor& editor) {
    editor.InsertQuestion();
}
void DeleteQuestion(DefinitionEditor& editor) {
    editor.DeleteQuestion();
}
void AddChoice(DefinitionEditor& editor) {
    editor.SelectChoice(editor.MostAnswers() + 1);
    editor.InsertChoice();
}
// Of a question with several answers.
void HalveAnum(DefinitionEditor& editor) {
    int q = kMiddle;
    while (editor.Anum() < 4)
        editor.SelectQuestion(++q);
    editor.SetAnum(editor.Anum() / 2);
}
// Every sample that gave it has answers to correct.
void DeleteChoice(DefinitionEditor& editor) {
    editor.DeleteChoice();
}

BENCHMARK_CAPTURE(FinishEditor, insert_question, InsertQuestion, false, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(FinishEditor, delete_question, DeleteQuestion, false, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(FinishEditor, add_choice, AddChoice, false, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(FinishEditor, halve_anum, HalveAnum, false, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(FinishEditor, delete_choice, DeleteChoice, false, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(FinishEditor, insert_with_texts, InsertQuestion, true, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(FinishEditor, insert_and_correct, InsertQuestion, false, true)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace quibra
