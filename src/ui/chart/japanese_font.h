// A font that has Japanese.
#pragma once

#include <QFont>

namespace quibra {

// `font` itself where its family has Japanese or no installed one does; otherwise the same in a family that does.
QFont JapaneseFont(const QFont& font);

}  // namespace quibra
