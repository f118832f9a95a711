#include "tabulation/windows/result_grid_model.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kEssayTextColumn = 2;
constexpr int kFirstEssayWidth = 5;  // of the saved widths

}  // namespace

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

// The words that always stand in a column, unless a person has made it narrower.
QStringList ResultGridModel::FixedWords(int column) const {
    if (sheet_.result.option.TotalKind == kEssayList) {
        static const QStringList kWords[] = {{u"[全体の限定]"_s}, {u"選択肢"_s, u"無回答"_s}, {u"記述文"_s}};
        if (column > kEssayTextColumn || sheet_.IsDragged(column, column + kFirstEssayWidth)) return {};
        return kWords[column];
    }
    if (LabelColumn(column) != column || sheet_.IsDragged(column, 0)) return {};
    return {u"[全体の限定]"_s, u"[個別の限定]"_s, u"[粗集計人数]"_s, u"無回答"_s};
}

// The column with the labels of the rows, for a column of figures.
int ResultGridModel::LabelColumn(int column) const {
    if (sheet_.result.option.TotalKind == kEssayList || !sheet_.view.sort) return 0;
    int label = 0;
    for (int c = 0; c <= column && c < columns_; ++c)
        if (c == 0 ||
            (!figureColumns_[static_cast<size_t>(c)] && c + 1 < columns_ && figureColumns_[static_cast<size_t>(c) + 1]))
            label = c;
    return label;
}

// What a screen reader says of a cell: its row and column before the text.
QString ResultGridModel::Spoken(int row, int column) const {
    QStringList words;
    const int label = LabelColumn(column);
    if (column != label) words += sheet_.grid.Text(label, row);
    if (captionRow_ > 0 && row != captionRow_) words += sheet_.grid.Text(column, captionRow_);
    words += sheet_.grid.Text(column, row);
    words.removeAll(QString());
    return words.join(u"、"_s);
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
            // Rows of an essay list may have several lines, which all begin at the top.
            return static_cast<int>(sheet_.grid.Alignment(index.column()) == CellAlignment::LeftTop ||
                                            sheet_.result.option.TotalKind == kEssayList
                                        ? Qt::AlignLeft | Qt::AlignTop
                                        : Qt::AlignLeft | Qt::AlignVCenter);
        case Qt::AccessibleTextRole:
            return Spoken(index.row(), index.column());
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
    if (role == kLeastTextRole) return FixedWords(section);
    if (role == kStretchRole)
        return sheet_.result.option.TotalKind == kEssayList && section == kEssayTextColumn &&
               !sheet_.IsDragged(section, kEssayTextColumn + kFirstEssayWidth);
    const bool caption = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    if (!caption || !Holds(captionRow_, section) || captionRow_ == 0) return {};
    return sheet_.grid.Text(section, captionRow_);
}

bool ResultGridModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) {
    if (orientation != Qt::Horizontal || role != kTwipsRole || !Holds(0, section)) return false;
    sheet_.grid.DragColumn(section, value.toInt());
    Q_EMIT headerDataChanged(orientation, section, section);
    return true;
}

}  // namespace quibra
