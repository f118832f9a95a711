// What every window of the program has in common. A window is a QWidget (or QDialog) with a .ui file; its constructor
// calls SetUpForm once behind setupUi.
#pragma once

#include <QWidget>

namespace quibra {

class UserInterface;

// Makes `window` one of the program's windows: F1 opens help topic `helpTopic`, controls without an accessible name get
// their buddy's (see NameControls), push buttons of one row get one width and no icons in a button box, and the row
// whose layout is named `buttonRow` stands in the order that the platform's dialogs have. `ui` must outlive the window.
void SetUpForm(QWidget* window, UserInterface& ui, int helpTopic);

// Some styles put pictures on the buttons of a QDialogButtonBox; no other button of the program has one.
void TakeIconsOffButtons(const QWidget* window);

// The program's windows that are open, in the order of their making. Progress disables and enables these.
QList<QWidget*> OpenForms();
// Closes all of the program's windows, hidden ones too, but those named by objectName. A window may refuse.
void WindowsCloseAll(const QStringList& except);

// In the middle of the screen.
void WinCenter(QWidget* window);

}  // namespace quibra
