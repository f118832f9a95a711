// How much room a text takes where each character of a Japanese font is one or two columns wide, as on a terminal.
#pragma once

#include <QStringView>

namespace quibra {

// Half-width kana take one column; the halves of a surrogate pair count one each.
int DisplayWidth(QStringView text);

}  // namespace quibra
