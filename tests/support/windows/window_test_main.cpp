#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <cstdio>

#include "ui/accessibility.h"
#include "ui/theme.h"

namespace {

// What Qt warns of (a connection that is none, a painter on nothing) is a fault; only what the offscreen platform says
// of itself is not.
void FailOnWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (text.startsWith(QStringLiteral("This plugin does not support "))) return;
    if (type == QtDebugMsg || type == QtInfoMsg)
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    else
        ADD_FAILURE() << qUtf8Printable(text);
}

}  // namespace

// Windows are driven on the offscreen platform, in a font that every machine with the tests' packages has.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    quibra::SetUpApplication(application);
    quibra::InstallAccessibility(application);
    QApplication::setFont(QFont(QStringLiteral("IPAexGothic"), 10));
    testing::InitGoogleTest(&argc, argv);
    qInstallMessageHandler(FailOnWarning);
    return RUN_ALL_TESTS();
}
