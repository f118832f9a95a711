// The look: style, font, translations, the four colours of our own, icons that follow the palette.
#pragma once

#include <QApplication>
#include <QColor>
#include <QIcon>

namespace quibra {

// Once, before the first window: Fusion where the platform has no style of its own, a Japanese font when the system
// names none, Qt's own texts in Japanese.
void SetUpApplication(QApplication& application);

// Accent, Error and NotApplicable are for writing and lines, HeadingTint is a ground that the palette's text stands on.
enum class ThemeColor { Accent, Error, NotApplicable, HeadingTint };
// Readable (see kReadableContrast) with the palette's windows, fields and text, light or dark.
QColor ColorOf(ThemeColor color, const QPalette& palette);

// Between 1 (the same lightness) and 21 (black on white), as WCAG 2 defines it.
double Contrast(const QColor& first, const QColor& second);
// What texts have at least.
inline constexpr double kReadableContrast = 4.5;

// One of our icons by its file name without ".svg", drawn in the palette's text colour at any size; a null icon when
// there is none of that name.
QIcon ThemeIcon(const QString& name);

}  // namespace quibra
