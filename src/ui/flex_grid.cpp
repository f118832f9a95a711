#include "ui/flex_grid.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "ui/flex_grid_painter.h"
#include "ui/flex_grid_strip.h"
#include "ui/window_place.h"

namespace quibra {

namespace {

constexpr int kLeastColumnWidth = 2;
// Milliseconds: after a change of widths, for measuring at once, and for each further turn of it.
constexpr int kMeasureDelay = 120;
constexpr int kMeasureAtOnce = 40;
constexpr int kMeasureTurn = 10;

}  // namespace

FlexGrid::FlexGrid(QWidget* parent) : QTableView(parent), painter_(new FlexGridPainter(this)) {
    setHorizontalHeader(new FlexGridStrip(kLeastColumnWidth, this));
    setItemDelegate(painter_);
    setShowGrid(false);
    setSelectionMode(ContiguousSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(1);
    measureLater_.setSingleShot(true);
    measureLater_.setInterval(kMeasureDelay);
    connect(&measureLater_, &QTimer::timeout, this, &FlexGrid::MeasureAll);
    connect(&measureOn_, &QTimer::timeout, this, [this] { MeasureOn(kMeasureTurn); });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &FlexGrid::ColumnResized);
}

FlexGrid::~FlexGrid() = default;

void FlexGrid::setModel(QAbstractItemModel* newModel) {
    QTableView::setModel(newModel);
    RefreshSizes(true);
}

void FlexGrid::reset() {
    QTableView::reset();
    RefreshSizes(false);
}

CellRange FlexGrid::Selection() const {
    if (!selectionModel()) return {};
    const QItemSelection selection = selectionModel()->selection();
    if (selection.isEmpty()) {
        const QModelIndex cell = currentIndex();
        return cell.isValid() ? CellRange{cell.column(), cell.row(), cell.column(), cell.row()} : CellRange{};
    }
    const QItemSelectionRange& range = selection.first();
    return {range.left(), range.top(), range.right(), range.bottom()};
}

void FlexGrid::Select(const CellRange& range) {
    if (!model()) return;
    const auto cell = [this](int column, int row) {
        return model()->index(std::clamp(row, kFixedRows, std::max(model()->rowCount() - 1, kFixedRows)),
                              std::clamp(column, 0, std::max(model()->columnCount() - 1, 0)));
    };
    const QModelIndex first = cell(range.column1, range.row1);
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    selectionModel()->select(QItemSelection(first, cell(range.column2, range.row2)),
                             QItemSelectionModel::ClearAndSelect);
}

void FlexGrid::selectAll() {
    if (model()) Select({0, kFixedRows, model()->columnCount() - 1, model()->rowCount() - 1});
}

QString FlexGrid::CurrentText() const {
    return currentIndex().data(Qt::DisplayRole).toString();
}

int FlexGrid::BaseRowHeight() const {
    return fontMetrics().lineSpacing() + 2 * kGridRowPadding;
}

int FlexGrid::ToldRowHeight(int row) const {
    const QVariant twips = model()->headerData(row, Qt::Vertical, kTwipsRole);
    const int told = twips.isValid() ? static_cast<int>(std::lround(twips.toDouble() / TwipsPerPixel(this))) : 0;
    return std::max(told, BaseRowHeight());
}

int FlexGrid::MeasuredRowHeight(int row) const {
    const int lines = painter_->RowLines(row);
    return std::max(ToldRowHeight(row), lines * fontMetrics().lineSpacing() + 2 * kGridRowPadding);
}

void FlexGrid::RefreshSizes(bool measure) {
    if (!model()) return;
    {
        const QScopedValueRollback sizing(sizing_, true);
        const double perPixel = TwipsPerPixel(this);
        verticalHeader()->setDefaultSectionSize(BaseRowHeight());
        for (int column = 0; column < model()->columnCount(); ++column) {
            const double twips = model()->headerData(column, Qt::Horizontal, kTwipsRole).toDouble();
            const bool figures = model()->headerData(column, Qt::Horizontal, kFigureRole).toBool();
            int least = figures ? painter_->FigureWidth() : kLeastColumnWidth;
            for (const QString& words : model()->headerData(column, Qt::Horizontal, kLeastTextRole).toStringList())
                least = std::max(least, fontMetrics().horizontalAdvance(words) + 2 * kGridSidePadding);
            const int width = std::max(least, static_cast<int>(std::lround(twips / perPixel)));
            if (columnWidth(column) != width) setColumnWidth(column, width);
        }
        Stretch();
        if (model()->rowCount() > kFixedRows) setRowHidden(0, true);
    }
    if (measure) {
        MeasureAll();
        return;
    }
    measureLater_.stop();
    measureOn_.stop();
    measured_.clear();
    for (int row = kFixedRows; row < model()->rowCount(); ++row)
        if (const int height = ToldRowHeight(row); rowHeight(row) != height) setRowHeight(row, height);
    updateGeometries();
}

void FlexGrid::Stretch() {
    const QScopedValueRollback sizing(sizing_, true);
    for (int column = 0; model() && column < model()->columnCount(); ++column) {
        if (!model()->headerData(column, Qt::Horizontal, kStretchRole).toBool()) continue;
        const double twips = model()->headerData(column, Qt::Horizontal, kTwipsRole).toDouble();
        const int told = static_cast<int>(std::lround(twips / TwipsPerPixel(this)));
        const int others = horizontalHeader()->length() - columnWidth(column);
        const int width = std::max({told, viewport()->width() - others, kLeastColumnWidth});
        if (columnWidth(column) != width) setColumnWidth(column, width);
        return;
    }
}

// What a double click on a column's edge makes of it: the texts that stand in the column alone, as far as they are in
// sight.
int FlexGrid::sizeHintForColumn(int column) const {
    int width = kLeastColumnWidth;
    for (int row = std::max(rowAt(0), kFixedRows); row < model()->rowCount(); ++row) {
        if (rowViewportPosition(row) > viewport()->height()) break;
        const GridRowKind kind = painter_->Kind(row);
        if (kind != GridRowKind::Choice && kind != GridRowKind::Total) continue;
        width = std::max(width, fontMetrics().horizontalAdvance(painter_->Text(row, column)) + 2 * kGridSidePadding);
    }
    return width;
}

// Laying out the texts of a long list takes seconds: what is in sight is measured at once, the rest in turns.
void FlexGrid::MeasureAll() {
    measureLater_.stop();
    if (!model()) return;
    measured_.assign(static_cast<size_t>(model()->rowCount()), false);
    nextToMeasure_ = kFixedRows;
    MeasureOn(kMeasureAtOnce);
}

void FlexGrid::MeasureOn(qint64 milliseconds) {
    QElapsedTimer clock;
    clock.start();
    // The rows in sight stay where they are when others above them grow.
    const int top = rowAt(0);
    const int topEdge = top < 0 ? 0 : rowViewportPosition(top);
    MeasureRowsFrom(top, 1);
    while (IsMeasuring() && clock.elapsed() < milliseconds)
        MeasureRow(nextToMeasure_++);
    if (!IsMeasuring())
        measureOn_.stop();
    else if (!measureOn_.isActive())
        measureOn_.start();
    updateGeometries();
    if (top >= 0) verticalScrollBar()->setValue(verticalHeader()->sectionPosition(top) - topEdge);
}

bool FlexGrid::IsMeasuring() const {
    return nextToMeasure_ < static_cast<int>(measured_.size());
}

void FlexGrid::MeasureRow(int row) {
    const auto at = static_cast<size_t>(row);
    if (at >= measured_.size() || measured_[at]) return;
    measured_[at] = true;
    if (const int height = MeasuredRowHeight(row); rowHeight(row) != height) setRowHeight(row, height);
}

// As many rows as the window can show, going down or up.
void FlexGrid::MeasureRowsFrom(int row, int step) {
    for (int room = viewport()->height(); room >= 0 && row >= kFixedRows && row < model()->rowCount(); row += step) {
        MeasureRow(row);
        room -= rowHeight(row);
    }
}

void FlexGrid::ColumnResized(int column, int, int newSize) {
    if (sizing_ || !model()) return;
    model()->setHeaderData(column, Qt::Horizontal, static_cast<int>(std::lround(newSize * TwipsPerPixel(this))),
                           kTwipsRole);
    measureLater_.start();
}

// Column 0 stays at the left edge while the others scroll below it, unless it would leave them no room.
bool FlexGrid::FirstColumnFloats() const {
    return model() && horizontalOffset() > 0 && 2 * columnWidth(0) < viewport()->width();
}

QRect FlexGrid::visualRect(const QModelIndex& index) const {
    QRect rect = QTableView::visualRect(index);
    if (index.column() == 0 && FirstColumnFloats()) rect.moveLeft(0);
    return rect;
}

QModelIndex FlexGrid::indexAt(const QPoint& point) const {
    if (point.x() >= 0 && FirstColumnFloats() && point.x() < columnWidth(0)) {
        const int row = rowAt(point.y());
        return row < 0 ? QModelIndex() : model()->index(row, 0);
    }
    return QTableView::indexAt(point);
}

void FlexGrid::scrollTo(const QModelIndex& index, ScrollHint hint) {
    QScrollBar* bar = horizontalScrollBar();
    const int before = bar->value();
    const bool floated = FirstColumnFloats();
    if (IsMeasuring() && index.isValid()) {
        MeasureRowsFrom(index.row(), 1);
        MeasureRowsFrom(index.row(), -1);
        updateGeometries();
    }
    QTableView::scrollTo(index, hint);
    if (index.column() == 0 && floated) {
        bar->setValue(before);
    } else if (index.column() > 0 && FirstColumnFloats()) {
        const int hidden = columnWidth(0) - visualRect(index).left();
        if (hidden > 0) bar->setValue(bar->value() - hidden);
    }
}

void FlexGrid::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    if (dy != 0 && IsMeasuring()) MeasureRowsFrom(rowAt(0), 1);
    // Texts that flow and the floating column do not move with the pixels.
    if (dx == 0) return;
    static_cast<FlexGridStrip*>(horizontalHeader())->firstFloats = FirstColumnFloats();
    horizontalHeader()->viewport()->update();
    viewport()->update();
}

void FlexGrid::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (!model() || model()->columnCount() == 0) return;
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const int right = horizontalHeader()->length() - horizontalOffset();
    const bool floats = FirstColumnFloats();
    const QStyle::State state = isActiveWindow() ? QStyle::State_Active | QStyle::State_Enabled : QStyle::State_Enabled;
    for (int row = rowAt(event->rect().top()); row >= 0 && row < model()->rowCount(); ++row) {
        const int top = rowViewportPosition(row);
        if (top > event->rect().bottom()) break;
        option.state = state;
        if (right < viewport()->width()) {
            option.rect = QRect(right, top, viewport()->width() - right, rowHeight(row));
            painter_->Paint(painter, option, row, model()->columnCount());
        }
        if (!floats) continue;
        const QModelIndex cell = model()->index(row, 0);
        option.rect = visualRect(cell);
        if (selectionModel()->isSelected(cell)) option.state |= QStyle::State_Selected;
        if (cell == currentIndex() && hasFocus()) option.state |= QStyle::State_HasFocus;
        painter_->paint(&painter, option, cell);
    }
    if (floats) {
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(columnWidth(0), event->rect().top(), columnWidth(0), event->rect().bottom());
    }
}

// The end of a run of filled cells, or the next filled one, as spreadsheets jump with Ctrl.
QModelIndex FlexGrid::Edge(const QModelIndex& from, int rowStep, int columnStep) const {
    const auto next = [&](const QModelIndex& cell) {
        const int row = cell.row() + rowStep;
        return row < kFixedRows ? QModelIndex() : model()->index(row, cell.column() + columnStep);
    };
    const auto filled = [](const QModelIndex& cell) {
        return cell.isValid() && !cell.data(Qt::DisplayRole).toString().isEmpty();
    };
    QModelIndex cell = from;
    const bool inside = filled(from) && filled(next(from));
    for (QModelIndex step = next(cell); step.isValid(); step = next(cell)) {
        if (inside && !filled(step)) break;
        cell = step;
        if (!inside && filled(cell)) break;
    }
    return cell;
}

QModelIndex FlexGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (!model() || model()->rowCount() <= kFixedRows) return {};
    const QModelIndex now = currentIndex();
    if (!now.isValid()) return model()->index(kFixedRows, 0);
    const bool far = modifiers.testFlag(Qt::ControlModifier);
    switch (action) {
        case MoveHome:
            horizontalScrollBar()->setValue(0);
            return model()->index(far ? kFixedRows : now.row(), 0);
        case MoveEnd:
            return model()->index(far ? model()->rowCount() - 1 : now.row(), model()->columnCount() - 1);
        case MoveUp:
            if (far) return Edge(now, -1, 0);
            break;
        case MoveDown:
            if (far) return Edge(now, 1, 0);
            break;
        case MoveLeft:
            if (far) return Edge(now, 0, -1);
            break;
        case MoveRight:
            if (far) return Edge(now, 0, 1);
            break;
        default:
            break;
    }
    return QTableView::moveCursor(action, modifiers);
}

bool FlexGrid::IsSelected(int row, int column) const {
    return selectionModel() && selectionModel()->isSelected(model()->index(row, column));
}

// Qt draws the cells anew that were or are selected, not those that their texts flow over.
void FlexGrid::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    viewport()->update();
}

void FlexGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    Q_EMIT CurrentCellChanged();
}

void FlexGrid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        Q_EMIT CopyRequested();
        event->accept();
    } else {
        const QModelIndex before = currentIndex();
        const CellRange selection = Selection();
        QTableView::keyPressEvent(event);
        const QModelIndex now = currentIndex();
        if (event->modifiers().testFlag(Qt::ShiftModifier))
            Extend(selection, before);
        else if (now == before && event->key() >= Qt::Key_Home && event->key() <= Qt::Key_PageDown)
            Select({now.column(), now.row(), now.column(), now.row()});  // also where the edge stops the move
    }
}

// Stretches a selection to the current cell, from the corner opposite to where it was: as far as keys with Ctrl may
// jump, and under the floating column, where Qt would take one cell for another.
void FlexGrid::Extend(const CellRange& selection, const QModelIndex& before) {
    const QModelIndex now = currentIndex();
    if (!before.isValid() || !now.isValid() || now == before) return;
    const int row = before.row() == selection.row1 ? selection.row2 : selection.row1;
    const int column = before.column() == selection.column1 ? selection.column2 : selection.column1;
    selectionModel()->select(QItemSelection(model()->index(std::min(row, now.row()), std::min(column, now.column())),
                                            model()->index(std::max(row, now.row()), std::max(column, now.column()))),
                             QItemSelectionModel::ClearAndSelect);
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
    const QModelIndex before = currentIndex();
    const CellRange selection = Selection();
    QTableView::mousePressEvent(event);
    if (event->modifiers().testFlag(Qt::ShiftModifier)) Extend(selection, before);
}

void FlexGrid::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) Q_EMIT MenuRequested(event->globalPosition().toPoint());
}

void FlexGrid::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard) return;
    Q_EMIT MenuRequested(viewport()->mapToGlobal(visualRect(currentIndex()).center()));
}

void FlexGrid::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    Stretch();
    measureLater_.start();
}

void FlexGrid::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) RefreshSizes(true);
}

}  // namespace quibra
