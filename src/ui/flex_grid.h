// A grid of text cells over a model, driven like a spreadsheet. Row 0 of the model is the fixed row: it is never
// current nor selected, and the strip above the cells, whose edges size the columns, stands in its place. That strip
// and column 0 stay in sight while the rest scrolls.
//
// Sizes are in twips and belong to the model; dragging a column writes its new width there. Text flows over empty cells
// to its right, and a row grows with the text of its cells up to a few lines; what still does not fit is a tool tip.
#pragma once

#include <QTableView>
#include <QTimer>
#include <vector>

namespace quibra {

// What the grid asks its model beside text and alignment.
enum GridRole {
    kTwipsRole = Qt::UserRole,  // headerData: a column's width, settable, or a row's height; without: the grid's own
    kRowKindRole,               // data: a GridRowKind, the same for all cells of a row
    kLeastTextRole,             // headerData: words that a column is never narrower than
    kStretchRole,               // headerData: true for a column that takes the room the others leave
    kFigureRole,                // data: true for a cell whose digits stand under those of the cells above; headerData:
                                // for a column that has such cells
};

enum class GridRowKind { Plain, Heading, Limit, Choice, Total, Blank };

struct CellRange {
    int column1 = 0;
    int row1 = 0;
    int column2 = 0;
    int row2 = 0;

    bool operator==(const CellRange&) const = default;
};

class FlexGridPainter;

class FlexGrid : public QTableView {
    Q_OBJECT
  public:
    static constexpr int kFixedRows = 1;

    explicit FlexGrid(QWidget* parent = nullptr);
    ~FlexGrid() override;

    void setModel(QAbstractItemModel* model) override;

    // The selected rectangle; the current cell when nothing is selected, all 0 without one.
    CellRange Selection() const;
    // Makes the first cell current and selects the rectangle, cut to the grid.
    void Select(const CellRange& range);
    QString CurrentText() const;
    bool IsSelected(int row, int column) const;

    // Takes the sizes from the model. `measure`: rows grow with their texts, those far down in a long list somewhat
    // later; without it, quicker, they only get the heights the model tells.
    void RefreshSizes(bool measure);

    void selectAll() override;
    void reset() override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    QRect visualRect(const QModelIndex& index) const override;

  Q_SIGNALS:
    void CurrentCellChanged();
    void CopyRequested();
    // The right button was released over the grid, or the menu key pressed.
    void MenuRequested(const QPoint& globalPosition);

  protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    int sizeHintForColumn(int column) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    bool FirstColumnFloats() const;
    void Extend(const CellRange& selection, const QModelIndex& before);
    QModelIndex Edge(const QModelIndex& from, int rowStep, int columnStep) const;
    void ColumnResized(int column, int oldSize, int newSize);
    void Stretch();
    int BaseRowHeight() const;
    int ToldRowHeight(int row) const;
    int MeasuredRowHeight(int row) const;
    void MeasureAll();
    void MeasureOn(qint64 milliseconds);
    void MeasureRow(int row);
    void MeasureRowsFrom(int row, int step);
    bool IsMeasuring() const;

    FlexGridPainter* painter_;
    QTimer measureLater_;
    QTimer measureOn_;
    std::vector<bool> measured_;  // by row; empty when rows have the heights told
    int nextToMeasure_ = 0;
    bool sizing_ = false;  // the sizes being set are the model's own
};

}  // namespace quibra
