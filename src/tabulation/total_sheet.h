// One result: a total's options, its figures or rows, and the grid of cells that shows them. This is what stands behind
// a result window, without the window; the command-line tool prints the same cells.
#pragma once

#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <vector>

#include "core/user_interface.h"
#include "session/survey_file.h"
#include "tabulation/essay_list.h"
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

    bool ShowsCounts() const { return percent != PercentOnly; }
    bool ShowsPercent() const { return percent != CountsOnly; }

    // Low two bits 1 counts, 3 both, 2 percent; 4 sorted; 8 with blank columns.
    qint16 Flags() const;
};

// Column widths carried from one result to the next, in twips at scale 1; entries as in the settings file.
using ColumnWidths = std::array<qint32, 16>;
inline constexpr ColumnWidths kDefaultColumnWidths = {1400, 1000, 800, 0, 0, 1000, 1000, 1400, 2600, 1400};

// The grid row above the first listed answer, with the columns' headings.
inline constexpr int kEssayHeadRow = 3;

class TotalSheet : public SampleSelection {
  public:
    static constexpr int kMaxRows = 1999;
    static constexpr int kMaxEssayRows = 9999;
    // A block's rows from its first one on: heading, whole limit, individual limit, its choices, persons, a blank row.
    static constexpr int kWholeLimitRow = 1;
    static constexpr int kLimitRow = 2;
    static constexpr int kFirstChoiceRow = 3;
    static constexpr int kRowsBesideChoices = 5;

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
    // The rows of question q that bear figures, under limit L: its choices in the order shown, then the total row with
    // the persons and the sum of the rounded shares.
    struct BlockRow {
        qint16 RowCode;
        qint32 Figure;
        float Share;
    };
    std::vector<BlockRow> Block(int q, int L) const;
    // The words of a block: its heading, with the rank where one is counted, and the label of its row i.
    QString BlockHeading(int q) const;
    QString RowLabel(int L, int q, int i) const;
    qint16 ViewFlags = 0;  // as the table stands in the grid
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
    double EssayAverage() const;  // over all listed rows, numeric or not; 0 without rows
    qint32 FromDno = 0;           // where the list starts; behind a continued list, where it goes on
    bool HasNext = false;         // a continuation can be asked for

    qint32 EssayDnoCount() const override;
    void EssayDnoReset() override { essayCursor_ = 0; }
    qint32 EssayDno() override;

  private:
    void SaveColumnWidths();
    void RunTable();
    void PlanRows();
    void LayoutColumns();
    void SetLimitColumn(int L);
    void CountQuestion(TableCounter* counter, int q, int L);
    Figures CountAll(TableCounter& counter, int q, int L);
    Figures CountRough(int q, int L);
    bool ReportWalk(qint32 dno);
    void OrderRows(int q, int L);
    void ShowBlock(int q, int L);
    void WriteBlock(int q, int L);
    void RunEssayList();
    void EssayHeader();
    void ListEssays(const LimitList& list);
    void ListSample(qint32 dno, const std::vector<EssayHit>& hits);
    QStringList RefAnswers(qint32 dno) const;
    int ScaledWidth(int twips) const;

    const Survey& survey_;
    UserInterface& ui_;
    TotalMonitor& monitor_;
    ColumnWidths& widths_;
    bool ready_ = false;
    qint16 lastKind_ = 0;
    BoundedArray<qint16, kMaxQuestions + 1> rowStart_;
    std::vector<qint16> colStart_;
    std::vector<std::vector<qint32>> counts_;
    std::vector<std::vector<qint16>> rowCode_;
    QRandomGenerator random_;  // steps of a rough total; not seeded, so that one can be repeated
    qint32 essayCursor_ = 0;
};

}  // namespace quibra
