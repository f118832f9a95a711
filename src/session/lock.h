// The lock on a survey: which commands of the main window its level leaves on. The changed mark is one of them: a
// survey counts as changed while "save" is enabled, so a locked one never does.
#pragma once

#include "core/survey.h"

namespace quibra {

// Enabled state of the commands that the lock governs, and whether the data stand unlocked.
struct MenuState {
    bool mnuFileSave = false;
    bool mnuFileSaveAs = false;
    bool mnuInput = false;
    bool mnuOutput = false;
    bool mnuSetQuota = false;
    bool mnuSetParagraph = false;
    bool mnuSetCollection = false;
    bool mnuSetQuestion = false;
    bool mnuSetLimit = false;
    bool mnuMerge = false;
    bool mnuStatis = false;
    bool mnuQuestions = false;
    bool mnuAbout = false;
    bool mnuKey = true;
    bool unlocked = false;  // the look of the lock window: the frames to lock and to change the password show
};

// The locked look: turns off what the survey's LockLevel forbids and leaves the rest as it is.
void LockApply(const Survey& survey, MenuState& menu);
// The unlocked look: everything on.
void LockRelease(MenuState& menu);

}  // namespace quibra
