// Text at the edge of the program: Unicode to and from code page 932 (Shift-JIS) as Microsoft defines it. No other file
// knows the code page. Safe in any thread.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace quibra {

// Bytes to text. Bytes that the code page leaves undefined: 80, A0, FD, FE and FF read as U+0080 and U+F8F0 to U+F8F3,
// a double byte without a character as one U+FFFD, a lead byte with no trail byte behind it as U+FFFD by itself.
QString DecodeCodePage(QByteArrayView bytes);

// Text to bytes, "?" for each character (a surrogate pair is one) that the code page lacks.
QByteArray EncodeCodePage(QStringView text);

// The code of a character in the code page: 0 to 255, or lead * 256 + trail.
int CharacterCode(QChar character);

// The character of a code; U+FFFD for a code that names none.
QChar CharacterOfCode(int code);

}  // namespace quibra
