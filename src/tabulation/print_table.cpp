#include "tabulation/print_table.h"

#include "core/labels.h"
#include "tabulation/table_figures.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

class TableMaker {
  public:
    TableMaker(const Survey& survey, const TotalSheet& sheet) : survey_(survey), sheet_(sheet), result_(sheet.result) {}

    // The labels stand at the left once, or in front of each limit where sorting gives it an order of its own.
    PrintBlock Block(int q) const {
        PrintBlock block;
        block.Heading = BlockHeading(survey_, result_, q);
        PrintRow limits{{}, true, false};
        std::vector<PrintRow> rows(static_cast<size_t>(survey_.Questions[q].ChoiceCount) + 1);
        rows.back().Bold = rows.back().Ruled = true;
        for (int L = 0; L < result_.option.LimitCount; ++L) {
            const bool hasLabels = L == 0 || sheet_.view.sort;
            if (hasLabels) {
                block.Columns.push_back({false, true, sheet_.view.sort});
                limits.Cells.push_back({u"[個別の限定]"_s});
                for (size_t i = 0; i < rows.size(); ++i)
                    rows[i].Cells.push_back({RowLabel(survey_, result_, L, q, static_cast<int>(i))});
            }
            const int figures = sheet_.view.percent == TotalView::CountsAndPercent ? 2 : 1;
            for (int i = 0; i < figures; ++i)
                block.Columns.push_back({true, false, i == 0 && !sheet_.view.sort});
            limits.Cells.push_back({result_.LimitTexts.at(L), figures});
            const std::vector<BlockRow> shown = BlockRows(survey_, result_, q, L);
            for (size_t i = 0; i < rows.size(); ++i) {
                if (sheet_.view.ShowsCounts()) rows[i].Cells.push_back({QString::number(shown[i].Figure)});
                if (sheet_.view.ShowsPercent()) rows[i].Cells.push_back({PercentText(shown[i].Share)});
            }
        }
        block.Heads = {std::move(limits)};
        block.Rows = std::move(rows);
        return block;
    }

    PrintBlock Essays() const {
        const ResultGrid& grid = sheet_.grid;
        PrintBlock block;
        block.Heading = grid.Text(0, 1);
        const std::vector<int> columns = FilledColumns();
        for (size_t i = 0; i < columns.size(); ++i)
            block.Columns.push_back({columns[i] == 0, columns[i] != 0, false});
        // The tools' columns have their heads in the rows above those of the list.
        for (int row = kEssayHeadRow - 2; row <= kEssayHeadRow; ++row) {
            PrintRow head{{}, true, false};
            bool filled = false;
            for (const int column : columns) {
                const bool isTool = column >= FirstToolColumn();
                const bool shown = row == kEssayHeadRow ? !isTool : isTool;
                head.Cells.push_back({shown ? grid.Text(column, row) : QString()});
                filled |= !head.Cells.back().Text.isEmpty();
            }
            if (filled) block.Heads.push_back(std::move(head));
        }
        // What a tool lists begins in the row of the list's heads.
        for (int row = kEssayHeadRow; row < grid.Rows(); ++row) {
            PrintRow line;
            bool filled = false;
            for (const int column : columns) {
                const bool isHead = row == kEssayHeadRow && column < FirstToolColumn();
                line.Cells.push_back({isHead ? QString() : grid.Text(column, row)});
                filled |= !line.Cells.back().Text.isEmpty();
            }
            line.Bold = line.Ruled = row == grid.Rows() - 1;
            if (filled) block.Rows.push_back(std::move(line));
        }
        return block;
    }

  private:
    int FirstToolColumn() const { return sheet_.grid.Columns() - 3; }

    // Those with a text below the heads of the list, and the list's own.
    std::vector<int> FilledColumns() const {
        std::vector<int> columns;
        for (int column = 0; column < sheet_.grid.Columns(); ++column) {
            bool filled = column < 3;
            for (int row = kEssayHeadRow; row < sheet_.grid.Rows() && !filled; ++row)
                filled = !sheet_.grid.Text(column, row).isEmpty();
            if (filled) columns.push_back(column);
        }
        return columns;
    }

    const Survey& survey_;
    const TotalSheet& sheet_;
    const TotalResult& result_;
};

}  // namespace

PrintTable MakePrintTable(const Survey& survey, const TotalSheet& sheet) {
    const TotalResult& result = sheet.result;
    const TableMaker maker(survey, sheet);
    PrintTable table;
    table.Title = survey.Title;
    if (result.option.TotalKind == kTable) {
        table.Conditions << u"[全体の限定] "_s + result.ExLimitText;
        for (int q = result.option.FromQno; q <= result.option.ToQno; ++q)
            table.Blocks.push_back(maker.Block(q));
    } else {
        table.Conditions << u"[全体の限定] "_s + sheet.grid.Text(1, 2);
        table.Blocks.push_back(maker.Essays());
    }
    return table;
}

}  // namespace quibra
