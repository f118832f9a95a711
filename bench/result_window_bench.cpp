#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <vector>

#include "message_loop_probe.h"
#include "session/survey_session.h"
#include "silent_interface.h"
#include "support/windows/scripted_desk.h"
#include "synthetic_survey.h"
#include "tabulation/windows/frm_grid_base.h"
#include "tabulation/windows/sheet_host.h"
#include "ui/flex_grid.h"
#include "window_bench.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kColumns = 30;
constexpr int kRuns = 7;
constexpr int kScrollSteps = 100;

// The same total without a window, with a monitor that does nothing.
double EngineAlone(const Survey& survey, const TotalOption& option) {
    SilentInterface silent;
    TotalMonitor monitor;
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(survey, silent, monitor, widths);
    return Milliseconds([&] { sheet.DoTotal(option); });
}

void MeasureTotal() {
    Asked ui;
    SurveySession session(ui, QString());
    session.survey = MakeSyntheticSurvey(kMillion);
    ScriptedDesk desk;
    ResultWindows windows(session, desk);
    windows.option = AllQuestions(session.survey, kColumns);
    FrmGridBase& window = windows.New();
    window.DoTotal();

    std::vector<double> alone, whole, ratios, gaps;
    const auto total = [&] {
        MessageLoopProbe probe;
        whole.push_back(Milliseconds([&] { window.DoTotal(); }));
        QApplication::processEvents();  // the result is drawn
        gaps.push_back(probe.LongestGapMilliseconds());
    };
    for (int run = 0; run < kRuns; ++run) {
        alone.push_back(EngineAlone(session.survey, windows.option));
        total();
        ratios.push_back(whole.back() / alone.back());
    }
    Print("total of 60 questions by 30 columns, no window", alone, "ms");
    Print("the same in its window", whole, "ms");
    Print("ratio of the two", ratios, "");
    Print("longest gap between turns", gaps, "ms");

    auto* cancel = window.findChild<QPushButton*>(u"cmdCancel"_s);
    std::vector<double> waits;
    for (int run = 0; run < kRuns; ++run) {
        const auto delay = std::chrono::milliseconds(static_cast<int>(whole.front()) * run / (2 * kRuns));
        const double wait = ui.WaitForQuestion(cancel, delay, [&] { window.DoTotal(); });
        if (wait >= 0) waits.push_back(wait);
    }
    std::printf("%zu of %d clicks in time\n", waits.size(), kRuns);
    Print("click on cancel to its question", waits, "ms");

    // As many people as a list holds at once.
    windows.option.TotalKind = kEssayList;
    windows.option.CrossMode = kEssayNoCondition;
    gaps.clear();
    whole.clear();
    for (int run = 0; run < kRuns; ++run)
        total();
    Print("list of 9,994 people", whole, "ms");
    Print("longest gap between turns", gaps, "ms");
    window.close();
}

// A table of figures, or a list of texts that wrap.
class BigModel : public QAbstractTableModel {
  public:
    BigModel(int rows, int columns, bool figures) : rows_(rows), columns_(columns), figures_(figures) {}
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == kRowKindRole) return static_cast<int>(GridRowKind::Choice);
        if (role == kFigureRole) return figures_ && index.column() > 0;
        if (role != Qt::DisplayRole) return {};
        if (index.column() == 0) return u"選択肢%1"_s.arg(index.row());
        return figures_ ? QString::number(index.row() * index.column())
                        : u"バスの本数が少なくて困っています。"_s.repeated(1 + index.row() % 5);
    }
    QVariant headerData(int, Qt::Orientation orientation, int role) const override {
        return role == kTwipsRole && orientation == Qt::Horizontal ? 1400 : QVariant();
    }

  private:
    int rows_;
    int columns_;
    bool figures_;
};

void MeasureGrid(int rows, int columns, bool figures) {
    BigModel model(rows, columns, figures);
    FlexGrid grid;
    grid.resize(1200, 700);
    std::printf("grid of %d x %d %s\n", rows, columns, figures ? "figures" : "texts");
    Print("  shown", {Milliseconds([&] {
              grid.setModel(&model);
              grid.show();
              grid.grab();
          })},
          "ms");
    std::vector<double> steps;
    for (int step = 1; step <= kScrollSteps; ++step)
        steps.push_back(Milliseconds([&] {
            for (QScrollBar* bar : {grid.verticalScrollBar(), grid.horizontalScrollBar()})
                bar->setValue(bar->maximum() * step / kScrollSteps);
            grid.grab();
        }));
    Print("  one step of scrolling", steps, "ms");
    Print("  a column of another width", {Milliseconds([&] {
              grid.setColumnWidth(0, 200);
              grid.RefreshSizes(true);
              grid.grab();
          })},
          "ms");
}

}  // namespace

void MeasureResultWindow() {
    MeasureTotal();
    MeasureGrid(2000, 512, true);
    MeasureGrid(10000, 8, false);
}

}  // namespace quibra
