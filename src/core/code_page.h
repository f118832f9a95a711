// Text at the edge of the program: Unicode to and from code page 932 (Shift-JIS) as Microsoft defines it. No other file
// knows the code page. Safe in any thread.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

namespace quibra {

// Bytes to text. Bytes that the code page leaves undefined: 80, A0, FD, FE and FF read as U+0080 and U+F8F0 to U+F8F3,
// a double byte without a character as one U+FFFD, a lead byte with no trail byte behind it as U+FFFD by itself.
QString DecodeCodePage(QByteArrayView bytes);

// Text to bytes, "?" for each character (a surrogate pair is one) that the code page lacks.
QByteArray EncodeCodePage(QStringView text);

// What a text loses when it is written: a character that the code page lacks and what stands in its place, "?" or the
// nearest that it has ("e" for "é"). Dashes, wave and overline that other systems type differ by number only and are
// not counted.
struct CodePageLoss {
    qsizetype at;       // place in the text
    qsizetype number;   // which character of the text it is, from 1
    QString character;  // perhaps a surrogate pair
    QString written;
    bool IsLost() const { return written == u"?"; }
};
QList<CodePageLoss> CodePageLosses(QStringView text);
// Says so to the user: "3文字目「😀」は「?」になります。", a line for each loss, the first few of many. Empty for none.
QString CodePageLossText(const QList<CodePageLoss>& losses);

// The code of a character in the code page: 0 to 255, or lead * 256 + trail.
int CharacterCode(QChar character);

// The character of a code; U+FFFD for a code that names none.
QChar CharacterOfCode(int code);

}  // namespace quibra
