#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>

#include "ui/accessibility.h"
#include "ui/theme.h"

// Windows are driven on the offscreen platform, in a font that every machine with the tests' packages has.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    quibra::SetUpApplication(application);
    quibra::InstallAccessibility(application);
    QApplication::setFont(QFont(QStringLiteral("IPAexGothic"), 10));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
