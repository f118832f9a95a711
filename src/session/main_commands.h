// What the commands of the main window do, as far as they need no window of their own: the ways to open, save and leave
// a survey, and the settings that are asked for in a box. All talk to the user of the session.
#pragma once

#include <QString>

#include "session/survey_session.h"

namespace quibra {

// What the main window says of the survey.
struct MainStatus {
    QString caption;
    QString title;
    QString file;
    QString figures;
};
MainStatus StatusOf(const SurveySession& session);

// What opening a file has come to.
struct OpenOutcome {
    bool replaced = false;  // the survey in memory is another one, or dead: windows on the old one must close
    QString page;           // the result page to show next, or empty
};

// The one way to open a file: asks about changes, loads, and first loads the survey a result page is based on where the
// user wants it. `mode` is a FileMode.
OpenOutcome SurveyOpen(SurveySession& session, const QString& path, int mode);

// Asks for the file to open, then opens it; nothing happens on Cancel.
OpenOutcome AskAndOpen(SurveySession& session, int mode);

// Asks about changes before the survey is let go, and saves on Yes. False when it must stay: Cancel, or a save that did
// not succeed.
bool AskToSaveChanges(SurveySession& session);

// Saves under the survey's own name. Where saving is not allowed the user is told, as by the button "save" itself.
bool SaveSurvey(SurveySession& session);
// Asks for a name and saves under it; it becomes the survey's own.
void SaveSurveyAs(SurveySession& session);

// The refusals of the buttons "open" and "save" while their menu items are off.
void RefuseOpen(UserInterface& ui);
void RefuseSave(UserInterface& ui);

// Asks for the interval of the save reminder until it is one or the user gives up.
void EditSaveInterval(SurveySession& session);
// Puts all settings back to their defaults, the ID quota included, when the user agrees.
void ResetSettings(SurveySession& session);

// Deletes what the program leaves in its folder while it runs.
void DeleteWorkFiles(const QString& directory);

// The last words of a program that cannot go on: brings a changed survey to a rescue file and names it beside `error`.
void TellTheEnd(SurveySession& session, const QString& error);

}  // namespace quibra
