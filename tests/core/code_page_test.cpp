#include "core/code_page.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <map>

using namespace quibra;
using namespace Qt::StringLiterals;

namespace {

// The C library's own table, one character at a time: an authority that shares nothing with ours.
class Iconv {
  public:
    Iconv(const char* target, const char* source) : handle_(iconv_open(target, source)) {}
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    ~Iconv() { iconv_close(handle_); }
    bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // Empty for what it refuses.
    QByteArray operator()(QByteArray source) {
        std::array<char, 8> target;
        char* from = source.data();
        char* to = target.data();
        size_t fromLeft = static_cast<size_t>(source.size());
        size_t toLeft = target.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        if (iconv(handle_, &from, &fromLeft, &to, &toLeft) == static_cast<size_t>(-1)) return {};
        return QByteArray(target.data(), to - target.data());
    }

  private:
    iconv_t handle_;
};

QByteArray Bytes(std::initializer_list<int> values) {
    QByteArray bytes;
    for (const int value : values)
        bytes += static_cast<char>(value);
    return bytes;
}

QByteArray Utf16(QChar character) {
    return Bytes({character.cell(), character.row()});
}

QChar FromUtf16(const QByteArray& bytes) {
    return QChar(static_cast<uchar>(bytes.at(0)), static_cast<uchar>(bytes.at(1)));
}

}  // namespace

TEST(CodePage, EveryByteAndDoubleByteReadsAsInTheCLibrary) {
    Iconv decode("UTF-16LE", "CP932");
    ASSERT_TRUE(decode.IsOpen());
    const std::map<int, char16_t> ours{{0x80, 0x80}, {0xA0, 0xF8F0}, {0xFD, 0xF8F1}, {0xFE, 0xF8F2}, {0xFF, 0xF8F3}};
    std::array<bool, 256> isLead{};
    int defined = 0;
    for (int code = 0; code < 0x10000; ++code) {
        const int lead = code >> 8;
        const int trail = code & 0xFF;
        const QByteArray bytes = lead > 0 ? Bytes({lead, trail}) : Bytes({trail});
        QByteArray utf16;
        QString expected(QChar::ReplacementCharacter);
        if (lead == 0 && ours.contains(code)) {
            expected = QChar(ours.at(code));
        } else if (lead > 0 && !isLead[lead]) {
            ASSERT_EQ(CharacterOfCode(code), expected.front()) << code;
            continue;
        } else {
            utf16 = decode(bytes);
            if (lead == 0) isLead[code] = utf16.isEmpty();
        }
        const bool isTrail = trail >= 0x40 && trail != 0x7F && trail <= 0xFC;
        if (!utf16.isEmpty())
            expected = FromUtf16(utf16);
        else if (lead > 0 && !isTrail)
            expected += DecodeCodePage(Bytes({trail}));
        ASSERT_EQ(DecodeCodePage(bytes), expected) << code;
        ASSERT_EQ(CharacterOfCode(code), expected.front()) << code;
        defined += lead > 0 && !utf16.isEmpty();
    }
    EXPECT_EQ(defined, 9604);
    EXPECT_EQ(CharacterOfCode(-1), QChar(QChar::ReplacementCharacter));
    EXPECT_EQ(CharacterOfCode(0x18140), QChar(QChar::ReplacementCharacter));
}

TEST(CodePage, EveryCharacterIsWrittenAsInTheCLibraryOrAsItsNearestRelative) {
    Iconv encode("CP932", "UTF-16LE");
    ASSERT_TRUE(encode.IsOpen());
    int nearest = 0;
    for (int unit = 0; unit < 0x10000; ++unit) {
        const QChar character(unit);
        const QByteArray theirs = encode(Utf16(character));
        const QByteArray ours = EncodeCodePage(QString(character));
        const int code = ours.size() == 2 ? static_cast<uchar>(ours[0]) << 8 | static_cast<uchar>(ours[1])
                                          : static_cast<uchar>(ours[0]);
        ASSERT_EQ(CharacterCode(character), code) << unit;
        if (!theirs.isEmpty() || ours == "?")
            ASSERT_EQ(ours, theirs.isEmpty() ? "?" : theirs) << unit;
        else
            ++nearest;
    }
    EXPECT_EQ(nearest, 79 + 5);  // best fit, and the single bytes that iconv refuses
    EXPECT_EQ(EncodeCodePage(u"Müßig, déjà vu ¡²µ· ÿ ゔ\u00ad\u0080\uF8F0\uF8F3"_s),
              "Musig, deja vu !2" + Bytes({0x83, 0xCA, 0x81, 0x45}) + " y " + Bytes({0x83, 0x94}) + "-" +
                  Bytes({0x80, 0xA0, 0xFF}));
    EXPECT_EQ(EncodeCodePage(u"—‖‾−〜¥"_s), Bytes({0x81, 0x5C, 0x81, 0x61, 0x7E, 0x81, 0x7C, 0x81, 0x60, 0x5C}));
}

TEST(CodePage, WhatATextLosesIsToldWithItsPlace) {
    const QList<CodePageLoss> losses = CodePageLosses(u"a\U0001F600é—～\U00020BB7b"_s);
    ASSERT_EQ(losses.size(), 3);
    EXPECT_EQ(losses[2].at, 6);
    EXPECT_TRUE(losses[0].IsLost() && !losses[1].IsLost() && losses[2].IsLost());
    EXPECT_EQ(CodePageLossText(losses).toStdString(),
              u"2文字目「😀」は「?」になります。\r\n3文字目「é」は「e」になります。\r\n"
              u"6文字目「𠮷」は「?」になります。"_s.toStdString());
    EXPECT_EQ(CodePageLossText(CodePageLosses(QString(9, u'é'))).count(u'\n'), 5);
    EXPECT_EQ(CodePageLosses(u"①髙﨑彅ｱ?—‖‾−〜"_s).size(), 0);
}

TEST(CodePage, TextKeepsItsPlacesAroundWhatIsDamagedOrLacking) {
    EXPECT_EQ(EncodeCodePage(u"①髙﨑彅ｱ\uE000\uE757∪"_s),
              Bytes({0x87, 0x40, 0xFB, 0xFC, 0xFA, 0xB1, 0xFA, 0x67, 0xB1, 0xF0, 0x40, 0xF9, 0xFC, 0x81, 0xBE}));
    EXPECT_EQ(EncodeCodePage(u"a\U0001F600b"_s), "a?b");
    EXPECT_EQ(EncodeCodePage(QString(QChar(0xD83D)) + u"a"_s + QChar(0xDE00)), "?a?");
    EXPECT_EQ(EncodeCodePage(QString(QChar(0)) + QChar(QChar::ReplacementCharacter)), QByteArray("\0?", 2));
    EXPECT_EQ(DecodeCodePage(Bytes({0x82, 0x0D, 0x0A, 0x82, 0xA0, 0x85, 0x40, 0x81})), u"\uFFFD\r\nあ\uFFFD\uFFFD"_s);
    EXPECT_EQ(DecodeCodePage({}), QString());
    EXPECT_EQ(EncodeCodePage({}), QByteArray());
}
