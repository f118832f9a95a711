// A result as it goes to paper: blocks of rows under heads that are repeated on every page they reach, with columns in
// groups that stay together when a table is wider than a page.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "core/survey.h"
#include "tabulation/total_sheet.h"

namespace quibra {

struct PrintColumn {
    bool right = false;   // figures
    bool isText = false;  // may be broken into lines and take what room is left
    bool opensGroup =
        false;  // the first of columns that stay together; those in front of the first group stand on every page
};

struct PrintCell {
    QString Text;
    int Span = 1;
};

struct PrintRow {
    std::vector<PrintCell> Cells;  // their spans sum up to the columns
    bool Bold = false;
    bool Ruled = false;  // a line above it
};

struct PrintBlock {
    QString Heading;
    std::vector<PrintColumn> Columns;
    std::vector<PrintRow> Heads;  // repeated
    std::vector<PrintRow> Rows;
};

struct PrintTable {
    QString Title;           // of the survey, at the head of every page
    QStringList Conditions;  // below it
    std::vector<PrintBlock> Blocks;
};

// The table or essay list as it stands in the grid, columns of its tools included.
PrintTable MakePrintTable(const Survey& survey, const TotalSheet& sheet);

}  // namespace quibra
