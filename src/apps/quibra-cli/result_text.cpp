#include "apps/quibra-cli/result_text.h"

#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QByteArray CsvCell(const QString& text) {
    QByteArray cell = text.toUtf8();
    if (!cell.contains('"') && !cell.contains(',') && !cell.contains('\r') && !cell.contains('\n')) return cell;
    return '"' + cell.replace('"', "\"\"") + '"';
}

// A line end in a text would part its row.
QByteArray TextCell(QString text) {
    return text.replace(u"\r\n"_s, u"↵"_s).replace(u'\r', u'↵').replace(u'\n', u'↵').toUtf8();
}

std::vector<int> AllColumns(const ResultGrid& grid) {
    std::vector<int> columns(static_cast<size_t>(grid.Columns()));
    std::iota(columns.begin(), columns.end(), 0);
    return columns;
}

// Without those that stand between limits, or that an essay list keeps for its tools.
std::vector<int> FilledColumns(const ResultGrid& grid, bool isEssayList) {
    constexpr int kTitleRow = 2;
    std::vector<int> columns = AllColumns(grid);
    std::erase_if(columns, [&](int column) {
        for (int row = ResultGrid::kFixedRows; row < grid.Rows(); ++row)
            if (!(isEssayList && row == kTitleRow) && !grid.Text(column, row).isEmpty()) return false;
        return true;
    });
    return columns;
}

template <typename Cell>
QByteArray JoinCells(const ResultGrid& grid, const std::vector<int>& columns, char separator, const char* lineEnd,
                     const Cell& cell) {
    QByteArray bytes;
    for (int row = ResultGrid::kFixedRows; row < grid.Rows(); ++row) {
        for (size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) bytes += separator;
            bytes += cell(grid.Text(columns[i], row));
        }
        bytes += lineEnd;
    }
    return bytes;
}

}  // namespace

QByteArray GridAsText(const ResultGrid& grid) {
    return JoinCells(grid, AllColumns(grid), '\t', "\n", TextCell);
}

QByteArray GridAsCsv(const ResultGrid& grid, bool isEssayList) {
    return JoinCells(grid, FilledColumns(grid, isEssayList), ',', "\r\n", CsvCell);
}

}  // namespace quibra
