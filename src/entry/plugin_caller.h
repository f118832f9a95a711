// Calls a survey's own program for good: a plug-in by its bare name through the companion library, or by a name with a
// dot a service of the session's message bus. docs/PLUGINS.md tells both. The user is asked before a program runs for
// the first time (ExternConsent).
#pragma once

#include "core/user_interface.h"
#include "entry/extern_call.h"
#include "entry/extern_consent.h"

namespace quibra {

class PluginCaller final : public ExternCaller {
  public:
    // `consentPath` is the file of the user's answers. `ui` must outlive the caller.
    PluginCaller(UserInterface& ui, const QString& consentPath) : ui_(ui), consent_(consentPath) {}

    // What a program may put its own windows in front of; 0 without a window.
    void SetWindow(qint32 window) { window_ = window; }

    // While samples are typed, a program that may not run is passed over in silence.
    QString CallExternal(Survey& survey, qint32 dno, int q, int a) override;
    void Trust(const Survey& survey) override { consent_.Keep(survey, true); }

  private:
    UserInterface& ui_;
    ExternConsent consent_;
    qint32 window_ = 0;
};

}  // namespace quibra
