// How the rows of the condition editor's lists are drawn. The items hold the bare texts.
#pragma once

#include <QListWidget>
#include <QStyledItemDelegate>

namespace quibra {

// Rows with some air around the text. In a list without the focus the selection is paler, so that of several lists the
// one that gets the keys can be seen.
class RowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

// The lines of a condition: heading and closing row tinted, and a mark between the rows where the next line goes.
class LimitRowDelegate : public RowDelegate {
  public:
    using RowDelegate::RowDelegate;

    // The row in front of which the next line goes, from 1.
    void SetInsertionRow(int row) { insertionRow_ = row; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

  private:
    int insertionRow_ = 1;
};

// Predefined conditions: each with its number in front and, where several can be picked, a tick.
class PreLimitDelegate : public RowDelegate {
  public:
    using RowDelegate::RowDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

// Gives `list` these rows, each with its text as a tool tip, and selects `row` (-1: none) without a signal.
void FillRows(QListWidget* list, const QStringList& rows, int row);

}  // namespace quibra
