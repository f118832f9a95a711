// What windows cost, on Qt's offscreen platform: one line a figure.
#include <QApplication>

#include "result_window_bench.h"
#include "ui/theme.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    quibra::SetUpApplication(application);
    quibra::MeasureResultWindow();
    return 0;
}
