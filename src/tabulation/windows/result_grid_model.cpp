#include "tabulation/windows/result_grid_model.h"

#include <algorithm>

namespace quibra {

ResultGridModel::ResultGridModel(const Survey& survey, TotalSheet& sheet, QObject* parent)
    : QAbstractTableModel(parent), survey_(survey), sheet_(sheet) {
    TakeShape();
}

void ResultGridModel::Sync() {
    const int rows = rowCount();
    const int added = sheet_.grid.Rows() - rows;
    if (sheet_.grid.Columns() != columns_ || added < 0) {
        SyncAll();
        return;
    }
    if (added > 0) beginInsertRows({}, rows, rows + added - 1);
    TakeShape();
    if (added > 0) endInsertRows();
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns_ - 1));
}

void ResultGridModel::SyncAll() {
    beginResetModel();
    TakeShape();
    endResetModel();
}

// What each row and column is, from the sheet's plan.
void ResultGridModel::TakeShape() {
    const TotalOption& option = sheet_.result.option;
    const int rows = sheet_.grid.Rows();
    columns_ = sheet_.grid.Columns();
    kinds_.assign(static_cast<size_t>(rows), GridRowKind::Plain);
    figureColumns_.assign(static_cast<size_t>(columns_), false);
    captionRow_ = 0;
    const auto setKind = [&](int row, GridRowKind kind) {
        if (row >= 0 && row < rows) kinds_[static_cast<size_t>(row)] = kind;
    };
    if (option.TotalKind == kEssayList) {
        if (rows <= kEssayHeadRow) return;
        setKind(1, GridRowKind::Heading);
        setKind(2, GridRowKind::Limit);
        setKind(kEssayHeadRow, GridRowKind::Limit);
        const int listed = static_cast<int>(sheet_.result.EssayRows.size());
        for (int row = kEssayHeadRow + 1; row <= kEssayHeadRow + listed; ++row)
            setKind(row, GridRowKind::Choice);
        if (const int total = kEssayHeadRow + listed + 1; total == rows - 1) setKind(total, GridRowKind::Total);
        captionRow_ = kEssayHeadRow;
        return;
    }
    if (sheet_.ViewFlags == 0) return;  // nothing planned yet
    for (int q = option.FromQno; q <= option.ToQno; ++q) {
        const int start = sheet_.result.RowStart[q];
        const int total = start + kFirstChoiceRow + survey_.Questions[q].ChoiceCount;
        setKind(start, GridRowKind::Heading);
        setKind(start + kWholeLimitRow, GridRowKind::Limit);
        setKind(start + kLimitRow, GridRowKind::Limit);
        for (int row = start + kFirstChoiceRow; row < total; ++row)
            setKind(row, GridRowKind::Choice);
        setKind(total, GridRowKind::Total);
        setKind(total + 1, GridRowKind::Blank);
    }
    // As the sheet lays its columns out; asking it for them would fail where an error has kept it from doing so.
    int column = 0;
    for (int L = 0; L < option.LimitCount; ++L) {
        if (L == 0 || sheet_.view.sort) ++column;
        for (int figures = sheet_.view.percent == TotalView::CountsAndPercent ? 2 : 1; figures > 0; --figures, ++column)
            if (column < columns_) figureColumns_[static_cast<size_t>(column)] = true;
        if (sheet_.view.space) ++column;
    }
    if (option.LimitCount > 1) captionRow_ = sheet_.result.RowStart[option.FromQno] + kLimitRow;
}

bool ResultGridModel::Holds(int row, int column) const {
    return row >= 0 && row < std::min(rowCount(), sheet_.grid.Rows()) && column >= 0 &&
           column < std::min(columns_, sheet_.grid.Columns());
}

bool ResultGridModel::IsFigure(int row, int column) const {
    const GridRowKind kind = kinds_[static_cast<size_t>(row)];
    return (kind == GridRowKind::Choice || kind == GridRowKind::Total) && figureColumns_[static_cast<size_t>(column)];
}

int ResultGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(kinds_.size());
}

int ResultGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

QVariant ResultGridModel::data(const QModelIndex& index, int role) const {
    if (!Holds(index.row(), index.column())) return {};
    switch (role) {
        case Qt::DisplayRole:
            return sheet_.grid.Text(index.column(), index.row());
        case Qt::TextAlignmentRole:
            return static_cast<int>(sheet_.grid.Alignment(index.column()) == CellAlignment::LeftTop
                                        ? Qt::AlignLeft | Qt::AlignTop
                                        : Qt::AlignLeft | Qt::AlignVCenter);
        case kRowKindRole:
            return static_cast<int>(kinds_[static_cast<size_t>(index.row())]);
        case kFigureRole:
            return IsFigure(index.row(), index.column());
        default:
            return {};
    }
}

QVariant ResultGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        if (role != kTwipsRole || !Holds(section, 0)) return {};
        const int height = sheet_.grid.RowHeight(section);
        return height == ResultGrid::kDefaultRowHeight ? QVariant() : QVariant(height);
    }
    if (!Holds(0, section)) return {};
    if (role == kTwipsRole) return sheet_.grid.ColumnWidth(section);
    if (role == kFigureRole) return bool{figureColumns_[static_cast<size_t>(section)]};
    const bool caption = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    if (!caption || !Holds(captionRow_, section) || captionRow_ == 0) return {};
    return sheet_.grid.Text(section, captionRow_);
}

bool ResultGridModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) {
    if (orientation != Qt::Horizontal || role != kTwipsRole || !Holds(0, section)) return false;
    sheet_.grid.SetColumnWidth(section, value.toInt());
    Q_EMIT headerDataChanged(orientation, section, section);
    return true;
}

}  // namespace quibra
