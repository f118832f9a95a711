// Texts in PDF documents that can be found again.
#pragma once

#include <QByteArray>
#include <QString>

namespace quibra {

// A document that Qt has written, with its texts as they were. Fonts show a radical and the character of the same form
// by one glyph, and Qt notes the smaller code of the two: who looks for 人 or 女 would not find them.
QByteArray WithOwnCharacters(QByteArray pdf);
// The same for the document at `path`.
void RestoreCharacters(const QString& path);

}  // namespace quibra
