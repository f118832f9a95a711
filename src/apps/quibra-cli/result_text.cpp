#include "apps/quibra-cli/result_text.h"

namespace quibra {

namespace {

QByteArray CsvCell(const QString& text) {
    QByteArray cell = text.toUtf8();
    if (!cell.contains('"') && !cell.contains(',') && !cell.contains('\r') && !cell.contains('\n')) return cell;
    return '"' + cell.replace('"', "\"\"") + '"';
}

template <typename Cell>
QByteArray JoinCells(const ResultGrid& grid, char separator, const char* lineEnd, const Cell& cell) {
    QByteArray bytes;
    for (int row = ResultGrid::kFixedRows; row < grid.Rows(); ++row) {
        for (int column = 0; column < grid.Columns(); ++column) {
            if (column > 0) bytes += separator;
            bytes += cell(grid.Text(column, row));
        }
        bytes += lineEnd;
    }
    return bytes;
}

}  // namespace

QByteArray GridAsText(const ResultGrid& grid) {
    return JoinCells(grid, '\t', "\n", [](const QString& text) { return text.toUtf8(); });
}

QByteArray GridAsCsv(const ResultGrid& grid) {
    return JoinCells(grid, ',', "\r\n", CsvCell);
}

}  // namespace quibra
