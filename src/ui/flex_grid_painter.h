// The delegate of a FlexGrid: draws its cells, whose texts flow over empty ones to their right, and measures them.
#pragma once

#include <QStyledItemDelegate>

#include "ui/flex_grid.h"
#include "ui/flex_grid_text.h"

namespace quibra {

class FlexGridPainter : public QStyledItemDelegate {
  public:
    explicit FlexGridPainter(FlexGrid* grid) : QStyledItemDelegate(grid), grid_(grid) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        Paint(*painter, option, index.row(), index.column());
    }
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    // `column` may be the one behind the last: the ground beside the cells.
    void Paint(QPainter& painter, const QStyleOptionViewItem& option, int row, int column) const;
    // A column of figures is not made narrower than this: a figure that is cut off reads as another.
    int FigureWidth() const;
    // The text of a row's cells needs so many lines, up to a few.
    int RowLines(int row) const;

    QString Text(int row, int column) const {
        return OneLine(grid_->model()->index(row, column).data(Qt::DisplayRole).toString());
    }
    GridRowKind Kind(int row) const {
        return static_cast<GridRowKind>(grid_->model()->index(row, 0).data(kRowKindRole).toInt());
    }

  private:
    bool IsFigure(int row, int column) const { return grid_->model()->index(row, column).data(kFigureRole).toBool(); }
    bool HasFocus(int row, int column) const;
    QFont FontOf(int row) const;
    int SourceOf(int row, int column) const;
    int FlowWidth(int row, int column) const;
    QRect FlowOf(int row, int column) const;

    FlexGrid* grid_;
};

}  // namespace quibra
