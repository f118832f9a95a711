#include "ui/window_place.h"

#include <QFontInfo>
#include <QScreen>
#include <algorithm>

#include "ui/theme.h"

namespace quibra {

namespace {

// Larger than any that a person can have chosen; the file's word is not taken for it.
constexpr float kLargestFont = 500;

bool IsSizable(const QWidget* window) {
    return window->minimumSize() != window->maximumSize();
}

void SetGround(QPalette& palette, const QColor& ground) {
    if (!ground.isValid()) return;
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Window, ground);
}

void SetText(QPalette& palette, const QColor& text) {
    if (!text.isValid()) return;
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, text);
}

// A text colour that can be read on the ground takes the place of one that can't.
void MakeReadable(QPalette& palette) {
    const QColor ground = palette.color(QPalette::Base);
    if (Contrast(palette.color(QPalette::Text), ground) < kReadableContrast)
        SetText(palette, Contrast(Qt::black, ground) >= kReadableContrast ? Qt::black : Qt::white);
}

}  // namespace

double TwipsPerPixel(const QWidget* widget) {
    return 1440.0 / widget->logicalDpiX();
}

void WinPosRestore(const Settings& settings, int index, QWidget* window) {
    const WinPosRec& place = settings.WinPos.at(index);
    const double twips = TwipsPerPixel(window);
    const QRectF screen = window->screen()->virtualGeometry();
    const double left = place.Left / twips;
    const double top = place.Top / twips;
    const double width = std::min(place.Width / twips, screen.width());
    const double height = std::min(place.Height / twips, screen.height());
    // Written so that a number that is none leaves the window alone.
    if (!(width > 0 && height > 0 && left < screen.right() && top < screen.bottom())) return;
    // A window wholly to the left of or above the screen could not be reached.
    if (!(left + width > screen.left() && top + height > screen.top())) return;
    window->move(qRound(left), qRound(top));
    if (IsSizable(window)) window->resize(qRound(width), qRound(height));
}

void WinPosSave(Settings& settings, int index, const QWidget* window) {
    if (window->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)) return;
    if (window->width() <= 0 || window->height() <= 0) return;
    const double twips = TwipsPerPixel(window);
    const auto stored = [twips](int pixels) { return static_cast<float>(pixels * twips); };
    settings.WinPos.at(index) = {stored(window->x()), stored(window->y()), stored(window->width()),
                                 stored(window->height())};
}

void FontApply(const Settings& settings, int index, QWidget* widget) {
    const FontRec& entry = settings.FontSet.at(index);
    QPalette palette = widget->palette();
    const QColor ground = ColorFromSettings(entry.BackColor);
    const bool hasFont = !entry.FontName.isEmpty() && entry.FontSize > 0;
    const QColor text = hasFont ? ColorFromSettings(entry.ForeColor) : QColor();
    SetGround(palette, ground);
    SetText(palette, text);
    // Two colours that were chosen together are the user's choice; one beside the desktop's may not go with it.
    if (!ground.isValid() || !text.isValid()) MakeReadable(palette);
    widget->setPalette(palette);
    if (!hasFont) return;
    QFont font(entry.FontName);
    font.setPointSizeF(std::min(entry.FontSize, kLargestFont));
    font.setBold(entry.FontBold);
    font.setItalic(entry.FontItalic);
    font.setUnderline(entry.FontUnderline);
    font.setStrikeOut(entry.FontStrikethru);
    widget->setFont(font);
}

void FontStore(Settings& settings, int index, const QWidget* widget) {
    const QFont& font = widget->font();
    FontRec& entry = settings.FontSet.at(index);
    entry.FontName = font.family();
    entry.FontSize = static_cast<float>(font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF());
    entry.FontBold = font.bold();
    entry.FontItalic = font.italic();
    entry.FontUnderline = font.underline();
    entry.FontStrikethru = font.strikeOut();
    entry.ForeColor = ColorToSettings(widget->palette().color(QPalette::Text));
    entry.BackColor = ColorToSettings(widget->palette().color(QPalette::Base));
}

QColor ColorFromSettings(qint32 value) {
    if (value < 0) return {};
    return QColor(value & 0xff, value >> 8 & 0xff, value >> 16 & 0xff);
}

qint32 ColorToSettings(const QColor& color) {
    return color.red() | color.green() << 8 | color.blue() << 16;
}

}  // namespace quibra
