// A result as text cells, with what a grid control needs to show it: widths and heights in twips, alignment by column.
// Row 0 is the fixed row. No window is involved; the result window shows one of these.
#pragma once

#include <QString>
#include <vector>

namespace quibra {

enum class CellAlignment { LeftTop = 0, LeftCenter = 1 };

class ResultGrid {
  public:
    static constexpr int kFixedRows = 1;
    static constexpr int kDefaultColumnWidth = 1000;
    static constexpr int kDefaultRowHeight = 240;

    int Rows() const { return static_cast<int>(rows_.size()); }
    int Columns() const { return static_cast<int>(columns_.size()); }
    // Keep the contents that stay inside. At least one row and one column.
    void SetRows(int rows);
    void SetColumns(int columns);
    void ClearText();

    // Run-time error 9 outside the grid.
    const QString& Text(int column, int row) const;
    void SetText(int column, int row, const QString& text);
    // A row behind the last one; the text's parts between tabs go to the columns from 0 on, those beyond the last
    // column are dropped.
    void AddRow(const QString& text);

    int ColumnWidth(int column) const;
    void SetColumnWidth(int column, int twips);
    // The width a person gives a column by hand, until the column is laid out anew.
    void DragColumn(int column, int twips);
    bool IsDragged(int column) const;
    CellAlignment Alignment(int column) const;
    void SetAlignment(int column, CellAlignment alignment);
    int RowHeight(int row) const;
    void SetRowHeight(int row, int twips);

    // Cells of `column1`, `row1` to `column2`, `row2`, both included, tabs between columns and CR between rows.
    QString Dump(int column1, int row1, int column2, int row2) const;

  private:
    struct Column {
        int width = kDefaultColumnWidth;
        bool dragged = false;
        CellAlignment alignment = CellAlignment::LeftCenter;
    };
    struct Row {
        int height = kDefaultRowHeight;
        std::vector<QString> cells;  // may be shorter than the grid is wide
    };
    size_t CheckedColumn(int column) const;
    size_t CheckedRow(int row) const;

    std::vector<Column> columns_ = std::vector<Column>(1);
    std::vector<Row> rows_ = std::vector<Row>(1);
};

// A dump as it goes to the clipboard or a text file: a CR LF behind each row. A last row of one character is dropped.
QString ClipText(const QString& dump);

}  // namespace quibra
