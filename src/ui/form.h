// What every window of the program has in common. A window is a QWidget (or QDialog) with a .ui file; its constructor
// calls SetUpForm once behind setupUi.
#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

namespace quibra {

class UserInterface;

enum class FormKind {
    Plain,
    Lasting,  // stays when all others are closed
    Aside,    // stands beside whatever is in work and has no questions of its own
};

// Makes `window` one of the program's windows: F1 opens help topic `helpTopic`, controls without an accessible name get
// their buddy's (see NameControls), push buttons of one row get one width and no icons in a button box, and the row
// whose layout is named `buttonRow` stands in the order that the platform's dialogs have. `ui` must outlive the window.
void SetUpForm(QWidget* window, UserInterface& ui, int helpTopic, FormKind kind = FormKind::Plain);

// The program's windows that are open, in the order of their making.
QList<QWidget*> OpenForms();
// False for other windows, too.
bool IsAside(const QWidget* window);

// Takes the open windows out of use while something long runs.
class FormPause {
  public:
    // All but `except`, and but those that are off already.
    void Begin(const QWidget* except);
    // Brings them back, with the focus where it was.
    void End();

  private:
    struct Paused {
        QPointer<QWidget> window;
        QPointer<QWidget> focus;  // being disabled takes it away
    };

    std::vector<Paused> paused_;
};

// Closes all of the program's windows, hidden ones too, but the lasting ones and `except`. A window may refuse.
void WindowsCloseAll(const QWidget* except);

// In the middle of the screen.
void WinCenter(QWidget* window);

}  // namespace quibra
