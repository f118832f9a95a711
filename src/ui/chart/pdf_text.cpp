#include "ui/chart/pdf_text.h"

#include <QFile>
#include <algorithm>
#include <iterator>
#include <utility>

#include "core/whole_file.h"

namespace quibra {

namespace {

constexpr char32_t kFirstRadical = 0x2E80;
constexpr char32_t kLastRadical = 0x2FDF;
constexpr qsizetype kCodeLength = 4;

// Radicals whose character Unicode's compatibility forms don't tell, or tell in another than the Japanese form.
constexpr std::pair<char16_t, char16_t> kJapanese[] = {
    {0x2E81, 0x5382}, {0x2E84, 0x4E59}, {0x2E88, 0x5200}, {0x2E8A, 0x535C}, {0x2E8E, 0x5140}, {0x2E8F, 0x5C23},
    {0x2E92, 0x5DF3}, {0x2E93, 0x5E7A}, {0x2E9C, 0x65E5}, {0x2E9D, 0x6708}, {0x2E9E, 0x6B7A}, {0x2EA0, 0x6C11},
    {0x2EA7, 0x725B}, {0x2EAA, 0x758B}, {0x2EAB, 0x76EE}, {0x2EAC, 0x793A}, {0x2EAE, 0x7AF9}, {0x2EB6, 0x7F8A},
    {0x2EBC, 0x8089}, {0x2EBD, 0x81FC}, {0x2EC1, 0x864E}, {0x2EC4, 0x897F}, {0x2EC6, 0x89D2}, {0x2ECA, 0x8DB3},
    {0x2ED1, 0x9577}, {0x2ED7, 0x96E8}, {0x2ED8, 0x9752}, {0x2EDD, 0x98DF}, {0x2EE3, 0x9AA8}, {0x2EE4, 0x9B3C},
    {0x2EE9, 0x9EC4}, {0x2EEA, 0x9EFE}, {0x2EEB, 0x6589}, {0x2EED, 0x6B6F}, {0x2EEF, 0x7ADC}, {0x2EF2, 0x4E80},
    {0x2F3E, 0x6238}, {0x2FAD, 0x9752}, {0x2FC8, 0x9EC4}, {0x2FCA, 0x9ED2}};

// The character that looks like a radical; the radical itself where there is none.
char16_t CharacterOf(char16_t radical) {
    const auto found = std::ranges::find(kJapanese, radical, &std::pair<char16_t, char16_t>::first);
    if (found != std::end(kJapanese)) return found->second;
    const QString plain = QString(QChar(radical)).normalized(QString::NormalizationForm_KC);
    return plain.size() == 1 ? plain[0].unicode() : radical;
}

}  // namespace

QByteArray WithOwnCharacters(QByteArray pdf) {
    const QByteArray open = "beginbfrange", close = "endbfrange";
    for (qsizetype start = pdf.indexOf(open); start >= 0; start = pdf.indexOf(open, start + 1)) {
        const qsizetype end = pdf.indexOf(close, start);
        if (end < 0) break;
        // The codes of characters stand in brackets, those of glyphs in front of them; all are <XXXX>, so that the new
        // ones take the room of the old.
        bool inBrackets = false;
        for (qsizetype at = start; at < end; ++at) {
            if (pdf[at] == '[') inBrackets = true;
            if (pdf[at] == ']') inBrackets = false;
            if (!inBrackets || pdf[at] != '<' || pdf[at + kCodeLength + 1] != '>') continue;
            const char32_t code = pdf.mid(at + 1, kCodeLength).toUInt(nullptr, 16);
            if (code < kFirstRadical || code > kLastRadical) continue;
            const char16_t own = CharacterOf(static_cast<char16_t>(code));
            pdf.replace(at + 1, kCodeLength, QByteArray::number(own, 16).toUpper());
        }
    }
    return pdf;
}

void RestoreCharacters(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return;
    const QByteArray pdf = file.readAll();
    file.close();
    if (const QByteArray own = WithOwnCharacters(pdf); own != pdf) WriteWholeFile(path, own);
}

}  // namespace quibra
