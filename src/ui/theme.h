// The look: style, font, translations, the four colours of our own, icons that follow the palette.
#pragma once

#include <QApplication>
#include <QColor>
#include <QIcon>

namespace quibra {

// Once, before the first window: Fusion where the platform has no style of its own, a Japanese font when the system
// names none, Qt's own texts in Japanese.
void SetUpApplication(QApplication& application);

enum class ThemeColor { Accent, Error, NotApplicable, HeadingTint };
// Readable on the palette's ground, light or dark.
QColor ColorOf(ThemeColor color, const QPalette& palette);

// One of our icons by its file name without ".svg", drawn in the palette's text colour.
QIcon ThemeIcon(const QString& name);

}  // namespace quibra
