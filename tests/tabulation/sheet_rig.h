// A result sheet with the user and the monitor of the tests, and the survey that its tests share.
#pragma once

#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "tabulation/total_sheet.h"

namespace quibra {

// Counts what a total reports and cancels it at a given report.
class RecordingMonitor : public TotalMonitor {
  public:
    int cancelAtReport = 0;  // counted from 1 over ShowPercent, those of the ends of walks included; 0 never
    int reports = 0;
    int redrawOff = 0;
    bool running = false;
    QStringList percents;
    QString lastPass;

    void Started() override;
    void ShowPass(int q, int toQno, int L, int limitCount) override;
    void ShowPercent(qint32 done, qint32 of) override;
    bool Cancelled() const override { return cancelled_; }
    void Redraw(bool on) override { redrawOff += on ? -1 : 1; }
    void Finished() override { running = false; }

  private:
    bool cancelled_ = false;
};

struct SheetRig {
    explicit SheetRig(const Survey& survey) : sheet(survey, ui, monitor, widths) {}

    // The texts of a row, its empty cells included.
    QStringList Row(int row) const;
    QStringList Rows(int from, int to) const;
    bool IsAtRest() const { return !monitor.running && monitor.redrawOff == 0; }

    ScriptedInterface ui;
    RecordingMonitor monitor;
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet;
};

// Ten samples: fruit (6 りんご, 3 みかん, 1 none), sex, up to two places with a number, a code or a text.
SurveyBuilder FruitSurvey();

TotalOption TableOf(int fromQno, int toQno, int rank = 0);

}  // namespace quibra
