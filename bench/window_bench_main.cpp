// What windows cost, on Qt's offscreen platform: one line a figure.
#include "apps/quibra/application.h"
#include "ui/theme.h"
#include "window_bench.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    quibra::Application application(argc, argv);
    quibra::SetUpApplication(application);
    quibra::MeasureFiles();
    quibra::MeasureEntryWindow();
    quibra::MeasureResultWindow();
    quibra::MeasureChart();
    return 0;
}
