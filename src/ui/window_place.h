// Places, fonts and colours of windows, as the settings keep them.
#pragma once

#include <QColor>
#include <QWidget>

#include "core/settings.h"

namespace quibra {

// 15 at 96 dpi.
double TwipsPerPixel(const QWidget* widget);

// Puts the window where it was, if that is on the screen; a window that can be sized gets its size, too. The place is
// that of the frame, the size that of its inside.
void WinPosRestore(const Settings& settings, int index, QWidget* window);
// Remembers the place of a window that is neither minimised nor maximised.
void WinPosSave(Settings& settings, int index, const QWidget* window);

// Between an entry of FontSet and a widget's font, text and ground. An entry without a name or size sets only the
// ground. Where not both colours are the entry's, the text gets one that can be read.
void FontApply(const Settings& settings, int index, QWidget* widget);
void FontStore(Settings& settings, int index, const QWidget* widget);

// A colour of the settings, 0x00BBGGRR; negative values name colours of the desktop, which give an invalid one.
QColor ColorFromSettings(qint32 value);
qint32 ColorToSettings(const QColor& color);

}  // namespace quibra
