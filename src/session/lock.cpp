#include "session/lock.h"

namespace quibra {

namespace {

constexpr bool MenuState::*kChanging[] = {
    &MenuState::mnuFileSave, &MenuState::mnuFileSaveAs,   &MenuState::mnuInput,         &MenuState::mnuOutput,
    &MenuState::mnuSetQuota, &MenuState::mnuSetParagraph, &MenuState::mnuSetCollection, &MenuState::mnuSetQuestion,
    &MenuState::mnuSetLimit, &MenuState::mnuMerge,
};
constexpr bool MenuState::*kShowing[] = {&MenuState::mnuStatis, &MenuState::mnuQuestions, &MenuState::mnuAbout};

}  // namespace

void LockApply(const Survey& survey, MenuState& menu) {
    menu.unlocked = false;
    if (survey.LockLevel >= 1)
        for (const auto item : kChanging)
            menu.*item = false;
    if (survey.LockLevel >= 2)
        for (const auto item : kShowing)
            menu.*item = false;
}

void LockRelease(MenuState& menu) {
    menu.mnuKey = true;
    menu.unlocked = true;
    for (const auto item : kChanging)
        menu.*item = true;
    for (const auto item : kShowing)
        menu.*item = true;
}

}  // namespace quibra
