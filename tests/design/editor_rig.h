// A question editor with a user who answers from queues and windows that hand back what a test has laid ready.
#pragma once

#include "design/definition_editor.h"
#include "support/scripted_interface.h"

namespace quibra {

class LaidOutWindows : public DefinitionWindows {
  public:
    explicit LaidOutWindows(SurveySession& session) : session_(session) {}

    bool ChooseCorrection() override {
        if (correction) session_.survey.CorrectFlags = *correction;
        return correction.has_value();
    }
    LimitList EditLimit(const LimitList& list) override {
        offered = list;
        return picked.value_or(list);
    }
    void ShowProgress(const QString& caption) override {
        captions += caption;
        if (onProgress) onProgress();
    }

    std::optional<qint16> correction;  // none: Cancel
    std::optional<LimitList> picked;   // none: what was offered
    LimitList offered;
    QStringList captions;
    std::function<void()> onProgress;

  private:
    SurveySession& session_;
};

struct EditorRig {
    explicit EditorRig(const Survey& survey) : session(ui, QStringLiteral("/nowhere")), windows(session) {
        session.survey = survey;
        session.Unlock();
        session.ChangedOff();
    }

    ScriptedInterface ui;
    SurveySession session;
    LaidOutWindows windows;
};

// The definition and its layout, what lies behind the last question included, to the byte.
bool SameDefinition(const Survey& one, const Survey& other);
// A line a sample: ID, flags, packed answers, texts.
QStringList SamplesOf(const Survey& survey);

}  // namespace quibra
