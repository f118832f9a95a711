#include "tabulation/result_grid.h"

#include <algorithm>

#include "core/bounded_array.h"

namespace quibra {

void ResultGrid::SetRows(int rows) {
    rows_.resize(static_cast<size_t>(std::max(rows, 1)));
}

void ResultGrid::SetColumns(int columns) {
    columns_.resize(static_cast<size_t>(std::max(columns, 1)));
    for (Row& row : rows_)
        if (row.cells.size() > columns_.size()) row.cells.resize(columns_.size());
}

void ResultGrid::ClearText() {
    for (Row& row : rows_)
        row.cells.clear();
}

const QString& ResultGrid::Text(int column, int row) const {
    static const QString kEmpty;
    const std::vector<QString>& cells = rows_[CheckedRow(row)].cells;
    const size_t index = CheckedColumn(column);
    return index < cells.size() ? cells[index] : kEmpty;
}

void ResultGrid::SetText(int column, int row, const QString& text) {
    std::vector<QString>& cells = rows_[CheckedRow(row)].cells;
    const size_t index = CheckedColumn(column);
    if (index >= cells.size()) cells.resize(index + 1);
    cells[index] = text;
}

void ResultGrid::AddRow(const QString& text) {
    Row row;
    for (const QStringView part : QStringView(text).split(u'\t')) {
        if (row.cells.size() == columns_.size()) break;
        row.cells.push_back(part.toString());
    }
    rows_.push_back(std::move(row));
}

int ResultGrid::ColumnWidth(int column) const {
    return columns_[CheckedColumn(column)].width;
}

void ResultGrid::SetColumnWidth(int column, int twips) {
    Column& told = columns_[CheckedColumn(column)];
    told.width = twips;
    told.dragged = false;
}

void ResultGrid::DragColumn(int column, int twips) {
    SetColumnWidth(column, twips);
    columns_[CheckedColumn(column)].dragged = true;
}

bool ResultGrid::IsDragged(int column) const {
    return columns_[CheckedColumn(column)].dragged;
}

CellAlignment ResultGrid::Alignment(int column) const {
    return columns_[CheckedColumn(column)].alignment;
}

void ResultGrid::SetAlignment(int column, CellAlignment alignment) {
    columns_[CheckedColumn(column)].alignment = alignment;
}

int ResultGrid::RowHeight(int row) const {
    return rows_[CheckedRow(row)].height;
}

void ResultGrid::SetRowHeight(int row, int twips) {
    rows_[CheckedRow(row)].height = twips;
}

QString ResultGrid::Dump(int column1, int row1, int column2, int row2) const {
    QString dump;
    for (int row = row1; row <= row2; ++row) {
        if (row > row1) dump += u'\r';
        for (int column = column1; column <= column2; ++column) {
            if (column > column1) dump += u'\t';
            dump += Text(column, row);
        }
    }
    return dump;
}

size_t ResultGrid::CheckedRow(int row) const {
    CheckSubscript(row, Rows());
    return static_cast<size_t>(row);
}

size_t ResultGrid::CheckedColumn(int column) const {
    CheckSubscript(column, Columns());
    return static_cast<size_t>(column);
}

QString ClipText(const QString& dump) {
    QString text;
    qsizetype start = 0;
    for (qsizetype end = dump.indexOf(u'\r'); end >= 0; end = dump.indexOf(u'\r', start)) {
        text += QStringView(dump).sliced(start, end - start);
        text += QStringView(u"\r\n");
        start = end + 1;
    }
    // A rest of one character is lost: what reads the clipboard has always got it so.
    if (start < dump.size() - 1) {
        text += QStringView(dump).sliced(start);
        text += QStringView(u"\r\n");
    }
    return text;
}

}  // namespace quibra
