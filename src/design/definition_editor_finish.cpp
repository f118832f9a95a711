// The ways out of the question editor: the rewrite of the samples, and the way back.
#include <QScopeGuard>
#include <cmath>
#include <new>
#include <utility>

#include "design/definition_editor.h"
#include "design/sample_rewrite.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kLastLineStart = 254;  // the entry behind it ends the table

}  // namespace

EditorOutcome DefinitionEditor::Finish() {
    QString question = u"終了します。"_s;
    if (changed_) question += u"要回答チェックの時は時間がかかります。"_s;
    if (ui_.Message(question, kOkCancel + kInformation) != Answer::Ok) return EditorOutcome::Open;
    if (changed_ && !windows_.ChooseCorrection()) return EditorOutcome::Open;
    session_.ChangedOn();
    ui_.Busy(true);
    const auto notBusy = qScopeGuard([this] { ui_.Busy(false); });
    try {
        Rewrite();
    } catch (const std::bad_alloc&) {
        throw RuntimeError(kErrorOutOfMemory);
    }
    Close();
    if (stopped_) return EditorOutcome::Broken;
    if (structureChanged_ || survey_.QuestionCount == 1) ResetLineTable();
    survey_.PreLimit = {};
    ui_.Beep();
    session_.Refresh(SurveySession::Change::Definition | SurveySession::Change::Samples);
    return EditorOutcome::Done;
}

// While the samples are made anew the survey has the definition that they are stored by, so whatever ends the work
// leaves a whole survey: with the edits in the open editor, or as it was when the user has stopped it.
void DefinitionEditor::Rewrite() {
    const DefinitionBank edited(survey_);
    Survey rewritten;
    edited.LoadInto(rewritten);
    rewritten.PreLimit = survey_.PreLimit;
    rewritten.CorrectFlags = survey_.CorrectFlags;
    if (!changed_ || survey_.SampleCount() == 0) {
        edited.LoadInto(survey_);
        if (survey_.SampleCount() == 0) survey_.Samples.SetLayout(survey_.SampleBytes, survey_.EssaySlots);
        return;
    }
    work_ = Work::Rewriting;
    stopped_ = false;
    const auto notWorking = qScopeGuard([this] { work_ = Work::None; });
    loaded_.LoadInto(survey_);
    auto backToEdits = qScopeGuard([&] { edited.LoadInto(survey_); });
    TouchedSamples touched;
    const qint32 samples = survey_.SampleCount();
    const auto goOn = [&](qint32 done) { return ShowProgress(done, samples); };
    if (!RewriteSamples(survey_, maps_, rewritten, touched, goOn)) {
        backToEdits.dismiss();
        return;
    }
    SampleChange change(session_.changes, ChangeCause::Rewrite);
    work_ = Work::Committing;
    RecordRewrite(survey_, maps_, rewritten, touched, change, [this] { ui_.LetEventsRun(); });
    edited.LoadInto(survey_);
    backToEdits.dismiss();
    std::swap(survey_.Samples, rewritten.Samples);
    rewritten.Samples.DropEssays([this] { ui_.LetEventsRun(); });
}

// False once the user has stopped the work.
bool DefinitionEditor::ShowProgress(qint32 done, qint32 count) {
    const int percent = static_cast<int>(std::lround(100.0 * done / count));
    if (std::exchange(shownPercent_, percent) != percent) windows_.ShowProgress(QString::number(percent) + u'%');
    ui_.LetEventsRun();
    return !stopped_;
}

// Every question begins a line of the answer sheet, whatever was laid out.
void DefinitionEditor::ResetLineTable() {
    for (int i = 0; i <= kLastLineStart; ++i)
        survey_.LineStart[i] = PackPosition(i, 0);
    for (int i = kLastLineStart + 1; i < kLineStartEntries; ++i)
        survey_.LineStart[i] = survey_.LineStart[kLastLineStart];
    survey_.LineFlag.Fill(false);
}

EditorOutcome DefinitionEditor::Cancel() {
    switch (work_) {
        case Work::Rewriting:
            if (ui_.Message(u"中止するとクイブラ内部のアンケートデータが壊れて保存出来なくなります。"_s,
                            kOkCancel + kWarning + kSecondDefault) == Answer::Ok) {
                stopped_ = true;
                session_.DeadSurvey();
            }
            return EditorOutcome::Open;
        case Work::Reassigning:
            // Each text is whole, so stopping between two of them breaks nothing.
            if (ui_.Message(u"中止しますか？"_s, kOkCancel + kWarning + kSecondDefault) == Answer::Ok) stopped_ = true;
            return EditorOutcome::Open;
        case Work::Committing:
        case Work::SetAside:
            return EditorOutcome::Open;  // nothing that could be stopped
        case Work::None:
            break;
    }
    if (ui_.Message(u"今までの変更はコード再割り当て以外すべて取り消されます。いいですか？"_s, kOkCancel + kWarning) !=
        Answer::Ok)
        return EditorOutcome::Open;
    loaded_.LoadInto(survey_);
    Close();
    session_.Refresh(SurveySession::Change::Definition);
    return EditorOutcome::Done;
}

void DefinitionEditor::Close() {
    closed_ = true;
    session_.SetEdit(nullptr);
}

// Texts alone, and a survey without samples, may be written as they are. While other work runs the definition fits.
bool DefinitionEditor::SetAside() noexcept {
    if (!changed_ || survey_.SampleCount() == 0 || work_ != Work::None) return false;
    loaded_.Exchange(survey_);
    work_ = Work::SetAside;
    return true;
}

void DefinitionEditor::TakeUp() noexcept {
    loaded_.Exchange(survey_);
    work_ = Work::None;
}

}  // namespace quibra
