// Places, fonts and colours of windows, as the settings keep them.
#pragma once

#include <QWidget>

#include "core/settings.h"

namespace quibra {

// 15 at 96 dpi.
double TwipsPerPixel(const QWidget* widget);

// Puts the window where it was, if that is on the screen; a window that can be sized gets its size, too.
void WinPosRestore(const Settings& settings, int index, QWidget* window);
// Remembers the place of a window that is neither minimised nor maximised.
void WinPosSave(Settings& settings, int index, const QWidget* window);

// Between an entry of FontSet and a widget's font and palette. An entry without a name or size sets only the
// background.
void FontApply(const Settings& settings, int index, QWidget* widget);
void FontStore(Settings& settings, int index, const QWidget* widget);

}  // namespace quibra
