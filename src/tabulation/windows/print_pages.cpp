#include "tabulation/windows/print_pages.h"

#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kFlags = Qt::TextWordWrap | Qt::TextWrapAnywhere | Qt::AlignTop;
constexpr double kMostLabel = 0.4;  // of the page's width
constexpr double kLeastGroup = 9;   // heights of a line
constexpr double kLeastText = 5;
constexpr int kLeastRows = 3;  // rows that a block has on the page where it begins

class PagePrinter {
  public:
    PagePrinter(QPagedPaintDevice& device, QPainter& painter, const PrintTable& table, const QFont& font)
        : device_(device), painter_(painter), table_(table), font_(font), bold_(font) {
        bold_.setBold(true);
        page_ = QRectF(QPointF(0, 0), device.pageLayout().paintRectPixels(device.logicalDpiX()).size());
        em_ = QFontMetricsF(font_, &device).height();
        padding_ = em_ * 0.35;
    }

    // Without `draws` only the pages are counted.
    int Run(bool draws, int pageCount) {
        draws_ = draws;
        pageCount_ = pageCount;
        pageNumber_ = 0;
        NewPage();
        for (const PrintBlock& block : table_.Blocks)
            PrintColumns(block);
        return pageNumber_;
    }

  private:
    QFontMetricsF Metrics(bool bold) const { return QFontMetricsF(bold ? bold_ : font_, &device_); }

    double HeightOf(const QString& text, double width, bool bold) const {
        if (text.isEmpty()) return em_;
        return Metrics(bold).boundingRect(QRectF(0, 0, std::max(width, em_), 1e6), kFlags, text).height();
    }

    void Text(const QRectF& place, const QString& text, bool bold, int alignment = Qt::AlignLeft) {
        if (!draws_ || text.isEmpty()) return;
        painter_.setFont(bold ? bold_ : font_);
        painter_.drawText(place, kFlags | alignment, text);
    }

    void Rule(double y, double left, double right, double width) {
        if (!draws_) return;
        painter_.setPen(QPen(Qt::black, em_ * width));
        painter_.drawLine(QPointF(left, y), QPointF(right, y));
    }

    void NewPage() {
        if (pageNumber_++ > 0 && draws_) device_.newPage();
        painter_.setPen(Qt::black);
        y_ = page_.top();
        const auto line = [this](const QString& text, bool bold) {
            const double height = std::min(HeightOf(text, page_.width(), bold), 3 * em_);
            Text(QRectF(page_.left(), y_, page_.width(), height), text, bold);
            y_ += height;
        };
        line(table_.Title, true);
        for (const QString& condition : table_.Conditions)
            line(condition, false);
        y_ += padding_;
        Rule(y_, page_.left(), page_.right(), 0.06);
        y_ += em_;
        bottom_ = page_.bottom() - 2 * em_;
        const QString number = u"%1 / %2"_s.arg(pageNumber_).arg(pageCount_);
        Text(QRectF(page_.left(), page_.bottom() - em_, page_.width(), em_ * 1.2), number, false, Qt::AlignHCenter);
        bodyTop_ = y_;
    }

    // The width that each column wants; texts no more than a share of the page.
    std::vector<double> Widths(const PrintBlock& block) const {
        std::vector<double> widths(block.Columns.size());
        const auto measure = [&](const PrintRow& row, bool heads) {
            size_t column = 0;
            for (const PrintCell& cell : row.Cells) {
                if (cell.Span == 1) {
                    const double wanted = Metrics(row.Bold).horizontalAdvance(cell.Text) + 2 * padding_ + 1;
                    const bool breaks = heads || block.Columns[column].isText;
                    widths[column] =
                        std::max(widths[column], breaks ? std::min(wanted, page_.width() * kMostLabel) : wanted);
                }
                column += static_cast<size_t>(cell.Span);
            }
        };
        for (const PrintRow& row : block.Heads)
            measure(row, true);
        for (const PrintRow& row : block.Rows)
            measure(row, false);
        // A heading over figures is given some room to be broken in.
        for (const PrintRow& row : block.Heads) {
            size_t column = 0;
            for (const PrintCell& cell : row.Cells) {
                const auto span = static_cast<size_t>(cell.Span);
                double sum = 0;
                for (size_t i = column; i < column + span; ++i)
                    sum += widths[i];
                const double wanted =
                    std::min(Metrics(row.Bold).horizontalAdvance(cell.Text) + 2 * padding_ + 1, kLeastGroup * em_);
                for (size_t i = column; i < column + span && sum < wanted; ++i)
                    widths[i] += (wanted - sum) / cell.Span;
                column += span;
            }
        }
        ShrinkTexts(block, widths);
        return widths;
    }

    // Where columns can't be parted, texts give way until all have room.
    void ShrinkTexts(const PrintBlock& block, std::vector<double>& widths) const {
        if (std::ranges::any_of(block.Columns, &PrintColumn::opensGroup)) return;
        double sum = 0, texts = 0;
        for (size_t i = 0; i < widths.size(); ++i) {
            sum += widths[i];
            if (block.Columns[i].isText) texts += widths[i];
        }
        if (sum <= page_.width() || texts <= 0) return;
        const double share = std::max(0.0, (page_.width() - (sum - texts)) / texts);
        for (size_t i = 0; i < widths.size(); ++i)
            if (block.Columns[i].isText) widths[i] = std::max(widths[i] * share, std::min(widths[i], kLeastText * em_));
    }

    void PrintColumns(const PrintBlock& block) {
        const std::vector<double> widths = Widths(block);
        const size_t count = block.Columns.size();
        size_t fixed = 0;
        double fixedWidth = 0;
        while (fixed < count && !block.Columns[fixed].opensGroup)
            fixedWidth += widths[fixed++];
        size_t first = fixed;
        do {
            size_t last = first;
            double width = fixedWidth;
            while (last < count) {
                size_t next = last + 1;
                double group = widths[last];
                while (next < count && !block.Columns[next].opensGroup)
                    group += widths[next++];
                if (last > first && width + group > page_.width()) break;
                width += group;
                last = next;
            }
            columns_.clear();
            for (size_t i = 0; i < count; ++i)
                if (i < fixed || (i >= first && i < last)) columns_.push_back(i);
            widths_ = widths;
            right_ = page_.left() + width;
            PrintRows(block, first > fixed);
            first = last;
        } while (first < count);
    }

    double RowHeight(const PrintBlock& block, const PrintRow& row) const {
        double height = em_;
        ForCells(row, [&](const PrintCell& cell, size_t column, double, double width) {
            if (row.Bold || block.Columns[column].isText)
                height = std::max(height, HeightOf(cell.Text, width - 2 * padding_, row.Bold));
        });
        return std::min(height + padding_, bottom_ - bodyTop_ - 4 * em_);
    }

    // Calls `work` with each cell that stands on this page, its first column, left end and width.
    template <typename Work>
    void ForCells(const PrintRow& row, Work work) const {
        size_t column = 0;
        double left = page_.left();
        for (const PrintCell& cell : row.Cells) {
            double width = 0;
            for (size_t i = column; i < column + static_cast<size_t>(cell.Span); ++i)
                if (std::ranges::binary_search(columns_, i)) width += widths_[i];
            if (width > 0) work(cell, column, left, width);
            left += width;
            column += static_cast<size_t>(cell.Span);
        }
    }

    void DrawRow(const PrintBlock& block, const PrintRow& row, bool isHead) {
        const double height = RowHeight(block, row);
        if (row.Ruled) Rule(y_, page_.left(), right_, 0.04);
        ForCells(row, [&](const PrintCell& cell, size_t column, double left, double width) {
            const QRectF place(left + padding_, y_ + padding_ / 2, width - 2 * padding_, height);
            const bool right = block.Columns[column].right;
            Text(place, cell.Text, row.Bold,
                 isHead && right ? Qt::AlignHCenter
                 : right         ? Qt::AlignRight
                                 : Qt::AlignLeft);
        });
        y_ += height;
    }

    void PrintHeads(const PrintBlock& block, bool goesOn) {
        const QString heading = goesOn ? block.Heading + u"（続き）"_s : block.Heading;
        const double height = std::min(HeightOf(heading, page_.width(), true), 4 * em_);
        Text(QRectF(page_.left(), y_, page_.width(), height), heading, true);
        y_ += height + padding_;
        Rule(y_, page_.left(), right_, 0.06);
        for (const PrintRow& head : block.Heads)
            DrawRow(block, head, true);
        Rule(y_, page_.left(), right_, 0.04);
        y_ += padding_ / 2;
    }

    double HeadsHeight(const PrintBlock& block) const {
        double height = HeightOf(block.Heading, page_.width(), true) + 2 * padding_;
        for (const PrintRow& head : block.Heads)
            height += RowHeight(block, head);
        return height;
    }

    void PrintRows(const PrintBlock& block, bool goesOn) {
        double first = HeadsHeight(block);
        for (size_t i = 0; i < std::min<size_t>(block.Rows.size(), kLeastRows); ++i)
            first += RowHeight(block, block.Rows[i]);
        if (y_ > bodyTop_ && y_ + first > bottom_) NewPage();
        PrintHeads(block, goesOn);
        for (const PrintRow& row : block.Rows) {
            if (y_ + RowHeight(block, row) > bottom_) {
                NewPage();
                PrintHeads(block, true);
            }
            DrawRow(block, row, false);
        }
        Rule(y_ + padding_ / 2, page_.left(), right_, 0.06);
        y_ += 1.5 * em_;
    }

    QPagedPaintDevice& device_;
    QPainter& painter_;
    const PrintTable& table_;
    QFont font_;
    QFont bold_;
    QRectF page_;
    double em_ = 0;
    double padding_ = 0;
    bool draws_ = false;
    int pageNumber_ = 0;
    int pageCount_ = 0;
    double y_ = 0;
    double bodyTop_ = 0;
    double bottom_ = 0;
    // Of the block and the part of its columns that is being printed.
    std::vector<size_t> columns_;
    std::vector<double> widths_;
    double right_ = 0;
};

}  // namespace

int PaintPages(QPagedPaintDevice& device, const PrintTable& table, const QFont& font) {
    QPainter painter(&device);
    PagePrinter printer(device, painter, table, font);
    const int pages = printer.Run(false, 0);
    return printer.Run(true, pages);
}

}  // namespace quibra
