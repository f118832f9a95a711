// One result: a total's options, its figures or rows, and the grid of cells that shows them. This is what stands behind
// a result window, without the window; the command-line tool prints the same cells.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "core/survey_file.h"
#include "core/user_interface.h"
#include "tabulation/result_grid.h"
#include "tabulation/table_counter.h"
#include "tabulation/total_option.h"

namespace quibra {

// How a running total speaks to whoever shows it. Calls come often: an implementation that draws should look at the
// clock first. Texts are made only when asked for.
class TotalMonitor {
  public:
    virtual ~TotalMonitor() = default;
    virtual void Started() {}  // "集計中"; cancel can be pressed
    virtual void ShowPass(int /*q*/, int /*toQno*/, int /*L*/, int /*limitCount*/) {}
    virtual void ShowPercent(qint32 /*done*/, qint32 /*of*/) {}
    virtual void LetEventsRun() {}
    virtual bool Cancelled() const { return false; }
    virtual void Redraw(bool /*on*/) {}
    virtual void Finished() {}

    static QString PassText(int q, int toQno, int L, int limitCount);
    static QString PercentOf(qint32 done, qint32 of);
};

// How a table is shown.
struct TotalView {
    enum Percent { CountsOnly = 0, CountsAndPercent = 1, PercentOnly = 2 };
    Percent percent = CountsAndPercent;
    bool sort = false;
    bool space = true;

    // Low two bits 1 counts, 3 both, 2 percent; 4 sorted; 8 with blank columns.
    qint16 Flags() const;
};

// Column widths carried from one result to the next, in twips at scale 1; entries as in the settings file.
using ColumnWidths = std::array<qint32, 10>;
inline constexpr ColumnWidths kDefaultColumnWidths = {1400, 1000, 800, 0, 0, 1000, 1000, 1400, 2600, 1400};

class TotalSheet : public SampleSelection {
  public:
    static constexpr int kMaxRows = 1999;
    static constexpr int kMaxEssayRows = 9999;

    // All must outlive the sheet. `widths` is shared by all results of a program.
    TotalSheet(const Survey& survey, UserInterface& ui, TotalMonitor& monitor, ColumnWidths& widths);

    // "Do Total": takes the options and counts.
    void DoTotal(const TotalOption& option);
    // Counts when nothing has been counted yet for these options, and shows. Does nothing before the first DoTotal.
    void RunTotal();

    TotalOption option;
    TotalView view;
    std::vector<int> RefQno;  // questions whose answers an essay list shows beside each row
    ResultGrid grid;
    float FontScale = 1;

    // The result of a table. Counts(L, row) and RowCode(L, row) by grid row.
    int RowStart(int q) const;  // FromQno to ToQno + 1
    int ColStart(int L) const;  // 0 to LimitCount
    qint32 Counts(int L, int row) const;
    qint16 RowCode(int L, int row) const;
    QStringList LimitTexts;
    QString ExLimitText;
    bool chkTotaled = false;
    bool chkSorted = false;

    // The result of an essay list.
    struct EssayRow {
        qint32 Dno;
        qint32 IDno;
        qint16 Cno;
        QString Choice;
        QString Essay;
        QStringList Refs;  // with the first row of a sample only
    };
    std::vector<EssayRow> EssayRows;
    double EssaySum = 0;
    qint32 FromDno = 0;    // where the list starts; behind a continued list, where it goes on
    bool HasNext = false;  // a continuation can be asked for

    qint32 EssayDnoCount() const override;
    void EssayDnoReset() override { essayCursor_ = 0; }
    qint32 EssayDno() override;

  private:
    void PlanRows();
    void LayoutColumns();
    void SetLimitColumn(int L);
    void CountQuestion(TableCounter& counter, int q, int L);
    void CountRough(int q, int L, const LimitList& list, Figures& figures);
    void OrderRows(int q, int L);
    void ShowBlock(int q, int L);
    void RunTable();
    void RunEssayList();
    void EssayHeader();
    void ListEssays(const LimitList& list);
    void SaveColumnWidths();

    const Survey& survey_;
    UserInterface& ui_;
    TotalMonitor& monitor_;
    ColumnWidths& widths_;
    bool ready_ = false;
    qint16 lastKind_ = 0;
    std::vector<qint16> rowStart_;
    std::vector<qint16> colStart_;
    std::vector<std::vector<qint32>> counts_;
    std::vector<std::vector<qint16>> rowCode_;
    qint32 essayCursor_ = 0;
};

}  // namespace quibra
