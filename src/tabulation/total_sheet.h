// A result as cells: a TotalResult, the run that fills it and the grid that shows it. This is what stands behind a
// result window, without the window; the command-line tool prints the same cells.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "core/user_interface.h"
#include "tabulation/result_grid.h"
#include "tabulation/total_result.h"
#include "tabulation/total_run.h"
#include "tabulation/total_view.h"

namespace quibra {

// Column widths carried from one result to the next, in twips at scale 1; entries as in the settings file.
using ColumnWidths = std::array<qint32, 16>;
inline constexpr ColumnWidths kDefaultColumnWidths = {1400, 1000, 800, 0, 0, 1000, 1000, 1400, 2600, 1400};

// The grid row above the first listed answer, with the columns' headings.
inline constexpr int kEssayHeadRow = 3;

class TotalSheet : private TotalDisplay {
  public:
    // All must outlive the sheet. `widths` is shared by all results of a program.
    TotalSheet(const Survey& survey, UserInterface& ui, TotalMonitor& monitor, ColumnWidths& widths);

    // "Do Total": takes the options and counts.
    void DoTotal(const TotalOption& option);
    // Counts when nothing has been counted yet for these options, and shows. Does nothing before the first DoTotal.
    void RunTotal();

    TotalResult result;
    TotalView view;
    ResultGrid grid;
    float FontScale = 1;
    qint16 ViewFlags = 0;  // as the table stands in the grid

    // The first grid column of limit L; of LimitCount, behind the last one.
    int ColStart(int L) const;
    // Whether a person has ever dragged the column, whose width is that entry of the widths.
    bool IsDragged(int column, int entry) const;
    // The limit whose columns hold grid column `column`; run-time error 9 behind the last one.
    int LimitAt(int column) const;
    // The ID that a cell of an essay list holds; nothing where it names no one.
    std::optional<qint32> PersonAt(int column, int row) const;

  private:
    void SaveColumnWidths();
    void LayoutColumns();
    void WriteBlock(int q, int L);
    void WriteEssayColumns();
    int ScaledWidth(int twips) const;

    // TotalDisplay
    void ShowPlan() override;
    void ShowLimit(int L) override;
    void ShowBlock(int q, int L) override;
    void ShowEssayHeads() override;
    void ShowEssay(const EssayRow& row) override;
    void ShowEssayTotal() override;

    const Survey& survey_;
    UserInterface& ui_;
    TotalMonitor& monitor_;
    ColumnWidths& widths_;
    TotalRun run_;
    bool ready_ = false;
    qint16 lastKind_ = 0;
    std::vector<qint16> colStart_;
};

}  // namespace quibra
