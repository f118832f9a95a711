// A monkey at the keyboard and the mouse of the real windows, offscreen:
//
//   window_monkey SURVEY [SEED [EVENTS]]
//
// It works on copies of the survey, one of them cut in half, and ends with status 0; a fault is the sanitizers' to
// tell, a run-time error that nobody handled ends it as it ends the program.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "apps/quibra/application.h"
#include "apps/quibra/frm_main.h"
#include "apps/quibra/start_up.h"
#include "session/survey_file.h"
#include "ui/accessibility.h"
#include "ui/qt_user_interface.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

constexpr std::array kKeys = {Qt::Key_Tab,    Qt::Key_Backtab,   Qt::Key_Up,    Qt::Key_Down,   Qt::Key_Left,
                              Qt::Key_Right,  Qt::Key_Home,      Qt::Key_End,   Qt::Key_PageUp, Qt::Key_PageDown,
                              Qt::Key_Return, Qt::Key_Escape,    Qt::Key_Space, Qt::Key_Delete, Qt::Key_Menu,
                              Qt::Key_F1,     Qt::Key_Backspace, Qt::Key_F5};
// Questions inside questions.
constexpr int kDeepest = 12;

class Monkey {
  public:
    Monkey(unsigned seed, int events, StartUp& program, QStringList surveys)
        : random_(seed), left_(events), program_(program), surveys_(std::move(surveys)) {
        Next();
    }

  private:
    // In a turn of the message loop of its own, also while an earlier action waits for a dialog.
    void Next() {
        QTimer::singleShot(0, qApp, [this] {
            if (left_-- == 0) std::_Exit(0);
            Next();
            if (depth_ >= kDeepest) return;
            ++depth_;
            Act();
            --depth_;
        });
    }

    int Below(int n) { return n > 0 ? static_cast<int>(random_() % static_cast<unsigned>(n)) : 0; }
    bool OneIn(int n) { return Below(n) == 0; }
    QPoint PlaceIn(const QWidget* widget) { return {Below(widget->width()), Below(widget->height())}; }

    // The one window that answers, or any.
    QWidget* Window() {
        if (QWidget* popup = QApplication::activePopupWidget()) return popup;
        if (QWidget* modal = QApplication::activeModalWidget()) return modal;
        FrmMain& main = *program_.Main();
        if (!main.isVisible()) main.show();
        if (main.isEnabled() && OneIn(program_.Session().IsDead() ? 40 : 400)) {
            main.SurveyOpen(surveys_[Below(static_cast<int>(surveys_.size()))], kExpectSurvey);
            return nullptr;
        }
        QWidgetList open = QApplication::topLevelWidgets();
        open.removeIf([](const QWidget* window) { return !window->isVisible(); });
        QWidget* window = open.isEmpty() ? nullptr : open[Below(static_cast<int>(open.size()))];
        if (window && OneIn(3)) window->activateWindow();
        return window;
    }

    void Act() {
        QWidget* window = Window();
        if (!window || !window->isEnabled()) return;
        QWidget* focus = window->focusWidget() ? window->focusWidget() : window;
        // Boxes hold up more than they show.
        const QString name = window->objectName();
        if ((name == u"fileDialog" || name == u"messageBox") && OneIn(4)) {
            QTest::keyClick(focus, OneIn(2) ? Qt::Key_Escape : Qt::Key_Return);
            return;
        }
        QWidgetList parts = window->findChildren<QWidget*>();
        parts.removeIf([window](const QWidget* part) {
            return !part->isVisible() || !part->isEnabled() || part->window() != window;
        });
        QWidget* part = parts.isEmpty() ? window : parts[Below(static_cast<int>(parts.size()))];
        const auto letter = static_cast<Qt::Key>(Qt::Key_A + Below(26));
        switch (Below(12)) {
            case 0:
            case 1:
            case 2: {
                constexpr Qt::KeyboardModifier modifiers[] = {Qt::ShiftModifier, Qt::ControlModifier};
                QTest::keyClick(focus, kKeys[static_cast<size_t>(Below(kKeys.size()))],
                                OneIn(4) ? modifiers[Below(2)] : Qt::NoModifier);
                return;
            }
            case 3:
                QTest::keyClick(focus, letter, Qt::AltModifier);
                return;
            case 4:
                QTest::keyClick(focus, letter, Qt::ControlModifier);
                return;
            case 5:
                QTest::keyClick(focus, static_cast<Qt::Key>(Qt::Key_0 + Below(10)));
                return;
            case 6:
                QTest::keyClick(focus, letter);
                return;
            case 7:
                QTest::mouseDClick(part, Qt::LeftButton, {}, PlaceIn(part));
                return;
            case 8:
                if (OneIn(3)) QTest::mouseClick(part, Qt::RightButton, {}, PlaceIn(part));
                return;
            case 9:
                if (OneIn(12))
                    window->close();
                else if (OneIn(4))
                    window->resize(100 + Below(900), 100 + Below(700));
                return;
            default:
                QTest::mouseClick(part, Qt::LeftButton, {}, PlaceIn(part));
        }
    }

    std::mt19937 random_;
    int left_;
    int depth_ = 0;
    StartUp& program_;
    QStringList surveys_;
};

int Run(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: window_monkey SURVEY [SEED [EVENTS]]\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Application application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    SetUpApplication(application);
    InstallAccessibility(application);
    const QTemporaryDir folder;
    qputenv("HOME", folder.path().toUtf8());
    const QStringList surveys = {folder.filePath(u"whole.qb"_s), folder.filePath(u"half.qb"_s)};
    for (const QString& survey : surveys)
        if (!QFile::copy(QString::fromLocal8Bit(argv[1]), survey)) return 2;
    QDir::setCurrent(folder.path());  // where it saves things
    QFile half(surveys[1]);
    half.resize(half.size() / 2);

    QtUserInterface ui;
    StartUp program(ui,
                    {.data = folder.path(), .runtime = folder.path(), .settings = folder.filePath(u"quibra.ini"_s)});
    application.SetLastWords(
        [](const QString& error) { std::fprintf(stderr, "last words: %s\n", qUtf8Printable(error)); });
    if (!program.Run(surveys[0])) return 2;
    QObject::connect(program.Main(), &FrmMain::HelpIndexAsked, &application, [&ui] { ui.HelpIndex(); });
    QObject::connect(program.Main(), &FrmMain::HelpSearchAsked, &application, [&ui] { ui.HelpSearch(); });
    const Monkey monkey(argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1, argc > 3 ? std::atoi(argv[3]) : 20000,
                        program, surveys);
    return QApplication::exec();
}

}  // namespace
}  // namespace quibra

int main(int argc, char** argv) {
    return quibra::Run(argc, argv);
}
