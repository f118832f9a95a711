#include <csignal>

#include "apps/quibra/application.h"
#include "apps/quibra/command_channel.h"
#include "apps/quibra/frm_main.h"
#include "apps/quibra/start_up.h"
#include "apps/quibra/unasked_end.h"
#include "session/main_commands.h"
#include "session/rescue.h"
#include "ui/accessibility.h"
#include "ui/qt_user_interface.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;
using namespace quibra;

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN);  // a file beyond the user's limit is an error of the write, told like a full disk
    Application application(argc, argv);
    QCoreApplication::setApplicationName(u"quibra"_s);
    QCoreApplication::setApplicationVersion(u"" QUIBRA_VERSION ""_s);
    QGuiApplication::setDesktopFileName(u"quibra"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    SetUpApplication(application);
    InstallAccessibility(application);
    QApplication::setWindowIcon(QIcon(u":/icons/quibra.svg"_s));

    QtUserInterface ui;
    StartUp startUp(ui, UserFolders());
    application.SetLastWords([&](const QString& error) { TellTheEnd(startUp.Session(), error); });
    const UnaskedEnd unaskedEnd([&] { LeaveUnasked(startUp.Session()); });
    CommandChannel channel([&](const QString& command) { startUp.Main()->Command(command); });

    // From inside the loop, so that its top sees the errors of the start, too.
    QMetaObject::invokeMethod(
        &application,
        [&] {
            if (!startUp.Run(PathOfCommandLine(QCoreApplication::arguments()))) {
                QCoreApplication::exit();
                return;
            }
            FrmMain* main = startUp.Main();
            QObject::connect(main, &FrmMain::HelpIndexAsked, main, [&ui] { ui.HelpIndex(); });
            QObject::connect(main, &FrmMain::HelpSearchAsked, main, [&ui] { ui.HelpSearch(); });
            QObject::connect(main, &FrmMain::Closed, &application, [] { QCoreApplication::exit(); });
            channel.Open();
        },
        Qt::QueuedConnection);
    return QApplication::exec();
}
