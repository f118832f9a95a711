#include "core/code_page.h"

#include <array>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

#include "core/code_page_table.inc"

constexpr char16_t kNoCharacter = 0xFFFD;
constexpr int kTrailBytes = 188;
constexpr int kFirstUserLead = 0xF0;  // the user-defined area: U+E000 on
constexpr int kLastUserLead = 0xF9;
constexpr int kUserLeads = kLastUserLead - kFirstUserLead + 1;
constexpr int kFirstShadowedLead = 0xED;  // rows ED and EE repeat characters of rows FA to FC
constexpr int kLastShadowedLead = 0xEE;

constexpr bool IsLead(int byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

constexpr bool IsTrail(int byte) {
    return byte >= 0x40 && byte <= 0xFC && byte != 0x7F;
}

// For a lead and a trail byte.
constexpr char16_t DoubleByte(int lead, int trail) {
    const int column = trail - (trail < 0x7F ? 0x40 : 0x41);
    if (lead >= kFirstUserLead && lead <= kLastUserLead)
        return static_cast<char16_t>(0xE000 + (lead - kFirstUserLead) * kTrailBytes + column);
    const int row = lead <= 0x9F ? lead - 0x81 : lead - 0xC1 - (lead > kLastUserLead ? kUserLeads : 0);
    return kDoubleBytes[row * kTrailBytes + column];
}

constexpr std::array<char16_t, 256> MakeSingleBytes() {
    std::array<char16_t, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        if (byte <= 0x80)
            table[byte] = static_cast<char16_t>(byte);
        else if (byte == 0xA0)
            table[byte] = 0xF8F0;
        else if (byte >= 0xFD)
            table[byte] = static_cast<char16_t>(0xF8F1 + byte - 0xFD);
        else
            table[byte] = IsLead(byte) ? kNoCharacter : static_cast<char16_t>(0xFF61 + byte - 0xA1);
    }
    return table;
}

constexpr std::array<char16_t, 256> kSingleBytes = MakeSingleBytes();

using EncodeTable = std::array<quint16, 0x10000>;

constexpr void AddRows(EncodeTable& table, int firstLead, int lastLead) {
    for (int lead = firstLead; lead <= lastLead; ++lead) {
        for (int trail = 0x40; trail <= 0xFC; ++trail) {
            if (!IsTrail(trail)) continue;
            quint16& code = table[DoubleByte(lead, trail)];
            if (code == 0) code = static_cast<quint16>(lead << 8 | trail);
        }
    }
}

// Code of every character, 0 where there is none. Of several codes the first one is written, which is the way of
// Windows once the shadowed rows come last.
constexpr EncodeTable MakeEncodeTable() {
    EncodeTable table{};
    for (int byte = 0; byte < 256; ++byte) {
        if (!IsLead(byte)) table[kSingleBytes[byte]] = static_cast<quint16>(byte);
    }
    AddRows(table, 0x81, 0x9F);
    AddRows(table, 0xE0, kFirstShadowedLead - 1);
    AddRows(table, kLastShadowedLead + 1, 0xFC);
    AddRows(table, kFirstShadowedLead, kLastShadowedLead);
    table[kNoCharacter] = 0;
    static_assert(std::size(kLacking) == std::size(kNearest));
    for (size_t i = 0; i + 1 < std::size(kLacking); ++i)
        table[kLacking[i]] = table[kNearest[i]];
    return table;
}

constexpr EncodeTable kEncodeTable = MakeEncodeTable();

quint16 CodeOf(char16_t character) {
    const quint16 code = kEncodeTable[character];
    return code != 0 || character == 0 ? code : u'?';
}

}  // namespace

QString DecodeCodePage(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const int byte = static_cast<unsigned char>(bytes[i]);
        const int next = i + 1 < bytes.size() ? static_cast<unsigned char>(bytes[i + 1]) : 0;
        if (IsLead(byte) && IsTrail(next)) {
            *out++ = DoubleByte(byte, next);
            ++i;
        } else {
            *out++ = kSingleBytes[byte];
        }
    }
    text.truncate(out - text.constData());
    return text;
}

QByteArray EncodeCodePage(QStringView text) {
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    char* out = bytes.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const quint16 code = CodeOf(text[i].unicode());
        if (code > 0xFF) *out++ = static_cast<char>(code >> 8);
        *out++ = static_cast<char>(code);
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) ++i;
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

QList<CodePageLoss> CodePageLosses(QStringView text) {
    static const QString kSameToTheEye = u"—‖‾−〜"_s;
    QList<CodePageLoss> losses;
    qsizetype number = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        ++number;
        const bool pair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const QChar written = CharacterOfCode(CodeOf(text[i].unicode()));
        if (text[i] != written && !kSameToTheEye.contains(text[i]))
            losses.append(
                {.at = i, .number = number, .character = text.mid(i, pair ? 2 : 1).toString(), .written = written});
        if (pair) ++i;
    }
    return losses;
}

QString CodePageLossText(const QList<CodePageLoss>& losses) {
    constexpr qsizetype kMostLines = 5;
    QStringList lines;
    for (const CodePageLoss& loss : losses.first(std::min(kMostLines, losses.size())))
        lines += u"%1文字目「%2」は「%3」になります。"_s.arg(loss.number).arg(loss.character, loss.written);
    if (losses.size() > kMostLines) lines += u"ほか%1文字。"_s.arg(losses.size() - kMostLines);
    return lines.join(u"\r\n"_s);
}

int CharacterCode(QChar character) {
    return CodeOf(character.unicode());
}

QChar CharacterOfCode(int code) {
    if (code >= 0 && code <= 0xFF) return kSingleBytes[code];
    const int lead = code >> 8;
    return IsLead(lead) && IsTrail(code & 0xFF) ? DoubleByte(lead, code & 0xFF) : QChar(kNoCharacter);
}

}  // namespace quibra
