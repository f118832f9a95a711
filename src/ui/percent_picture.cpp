#include "ui/percent_picture.h"

#include <QPainter>
#include <algorithm>

#include "core/numbers.h"

namespace quibra {

namespace {

constexpr QRgb kWiped = qRgb(0, 0, 0);

// From green to white.
QRgb ColorFrom(int percent) {
    const int faded = RoundToInt16(percent * 255 / 100.0);
    return qRgb(faded, RoundToInt16(191 + percent * 64 / 100.0), faded);
}

}  // namespace

PercentPicture::PercentPicture(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    Reset();
}

void PercentPicture::Reset() {
    colors_.fill(kWiped);
    last_ = 0;
    update();
}

void PercentPicture::Progress(int percent) {
    percent = std::clamp(percent, 0, 100);
    if (percent == last_) return;
    const auto [from, to] = std::minmax(last_, percent);
    std::fill(colors_.begin() + from, colors_.begin() + to, percent > last_ ? ColorFrom(last_) : kWiped);
    last_ = percent;
    update();
}

QSize PercentPicture::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 50, fontMetrics().height() * 3 / 2};
}

void PercentPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    const QRect box = rect().adjusted(1, 1, -1, -1);
    const auto edge = [&box](int percent) { return box.left() + box.width() * percent / 100; };
    for (int from = 0, to = 0; from < 100; from = to) {
        while (to < 100 && colors_[to] == colors_[from])
            ++to;
        painter.fillRect(edge(from), box.top(), edge(to) - edge(from), box.height(), QColor(colors_[from]));
    }
}

}  // namespace quibra
