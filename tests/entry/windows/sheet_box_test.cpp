#include "entry/windows/sheet_box.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

#include "support/qt_printers.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

constexpr std::array<QRgb, kSheetColors> kColors = {0, 0xFF006000, 0xFFFF0000, 0xFFBF00BF, 0xFF7F7F7F};

// A sheet written as "[年齢]{4}3{0}|": each stretch followed by its colour, "|" a line end.
SheetText Sheet(const QString& marked) {
    SheetText sheet;
    for (const QString& piece : marked.split(u'}', Qt::SkipEmptyParts)) {
        const qsizetype brace = piece.indexOf(u'{');
        const auto kind = static_cast<SheetControl::Kind>(piece.mid(brace + 1).toInt());
        sheet.Controls.push_back({static_cast<qint32>(sheet.Text.size()), kind});
        sheet.Text += piece.left(brace).replace(u"|"_s, u"\r\n"_s);
    }
    return sheet;
}

// The same of what the box shows; "!" marks bold.
QString Shown(const SheetBox& box) {
    QStringList lines;
    for (QTextBlock block = box.document()->firstBlock(); block.isValid(); block = block.next()) {
        QString line;
        for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
            const QRgb color = range.format.foreground().color().rgb();
            const auto* found = std::find(kColors.begin() + 1, kColors.end(), color);
            const bool plain = found == kColors.end() || !range.format.hasProperty(QTextFormat::ForegroundBrush);
            line += block.text().mid(range.start, range.length) + u'{' +
                    QString::number(plain ? 0 : found - kColors.begin()) +
                    (range.format.fontWeight() == QFont::Bold ? u"!}"_s : u"}"_s);
        }
        lines += line;
    }
    return lines.join(u'|');
}

struct Rig {
    Rig() {
        std::array<QColor, kSheetColors> colors;
        std::copy(kColors.begin(), kColors.end(), colors.begin());
        box.SetColors(colors);
        box.SetKeyHandler([this](SheetKey key) {
            keys += QString::number(static_cast<int>(key));
            return swallow;
        });
        QObject::connect(&box, &SheetBox::Typed, &box, [this] { keys += u't'; });
        QObject::connect(&box, &SheetBox::Left, &box, [this] { keys += u'l'; });
        box.show();
        box.activateWindow();
        box.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
    }
    void Compose(const QString& preedit, const QString& commit = QString()) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(&box, &event);
    }
    QString TakeKeys() { return std::exchange(keys, {}); }

    SheetBox box;
    QString keys;
    bool swallow = true;
};

TEST(SheetBox, ShowsSheetAfterSheetAsEachIs) {
    Rig rig;
    const QString sheets[] = {u"[年齢]{4}3{0}-[性別]{4}1{0}-{4}|{0}[職業]{4}"_s,
                              u"[年齢]{4}3{0}-[性別]{4}1{0}-{4}|{0}[職業]{4}2{0}/農業/{1}-{4}|{0}[趣味]{4}"_s,
                              u"[年齢]{4}3{3}-[性別]{4}1{0}-{4}|{0}[職業]{4}2{0}/農業/{1}-{4}|{0}[趣味]{4}"_s,
                              u"|{0}|{0}[年齢]{4}"_s,
                              u"𠮷{0}|{0}"_s,
                              u"𠮟{0}|{0}"_s,
                              u"{0}"_s};
    for (const QString& marked : sheets) {
        rig.box.ShowSheet(Sheet(marked));
        EXPECT_EQ(rig.box.Text(), Sheet(marked).Text);
        QString lines = marked;
        EXPECT_EQ(
            Shown(rig.box),
            lines.replace(u"|{0}"_s, u"|"_s).replace(u"}{0}"_s, u"}"_s).remove(QRegularExpression(u"^\\{0\\}$"_s)));
        EXPECT_EQ(rig.TakeKeys(), QString());
    }
    rig.box.SetText(u"12\r\n3"_s);
    for (const auto& [caret, place] : {std::pair{0, 0}, {2, 2}, {3, 4}, {4, 4}, {5, 5}, {999, 5}}) {
        rig.box.SetCaret(caret);
        EXPECT_EQ(rig.box.Caret(), place) << caret;
    }
    rig.box.MarkError(1, 4);
    EXPECT_EQ(Shown(rig.box), u"1{0}2{2!}|3{2!}"_s);
    EXPECT_EQ(rig.box.textCursor().selectionEnd(), 4);
    rig.box.SetText(u"12\r\n3"_s);
    EXPECT_EQ(Shown(rig.box), u"12{0}|3{0}"_s);
    EXPECT_EQ(rig.TakeKeys(), QString());
}

TEST(SheetBox, HandsOutTheKeysThatCommit) {
    Rig rig;
    rig.box.ShowSheet(Sheet(u"[年齢]{4}31{0}"_s));
    rig.box.SetCaret(5);
    QTest::keyClicks(&rig.box, u"2"_s);
    EXPECT_EQ(Shown(rig.box), u"[年齢]{4}3{0}1{0}"_s) << "what is typed has the color of text";
    QTest::keyClick(&rig.box, Qt::Key_Space);
    QTest::keyClick(&rig.box, Qt::Key_Return);
    QTest::keyClick(&rig.box, Qt::Key_Enter, Qt::KeypadModifier);
    QTest::keyClick(&rig.box, Qt::Key_Up);
    EXPECT_EQ(rig.box.Text(), u"[年齢]321"_s);
    EXPECT_EQ(rig.TakeKeys(), u"t2330"_s);
    rig.swallow = false;
    QTest::keyClick(&rig.box, Qt::Key_Space);
    EXPECT_EQ(rig.box.Text(), u"[年齢]32 1"_s);
    EXPECT_EQ(rig.TakeKeys(), u"2t"_s);
    // Undo reaches back to what was shown, no farther.
    QTest::keyClick(&rig.box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(rig.box.Text(), u"[年齢]31"_s);
    rig.box.ShowSheet(Sheet(u"[年齢]{4}3{0}"_s));
    QTest::keyClick(&rig.box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(rig.box.Text(), u"[年齢]3"_s);
}

TEST(SheetBox, LeavesACompositionAlone) {
    Rig rig;
    rig.box.ShowSheet(Sheet(u"2/{0}"_s));
    rig.box.SetCaret(2);
    rig.Compose(u"のうぎょう"_s);
    QTest::keyClick(&rig.box, Qt::Key_Space);
    QTest::keyClick(&rig.box, Qt::Key_Return);
    QTest::keyClick(&rig.box, Qt::Key_Down);
    EXPECT_EQ(rig.box.Text(), u"2/"_s);
    EXPECT_TRUE(rig.box.IsComposing());
    EXPECT_EQ(rig.TakeKeys(), QString());
    rig.Compose(QString(), u"農業"_s);
    EXPECT_EQ(rig.box.Text(), u"2/農業"_s);
    EXPECT_EQ(rig.TakeKeys(), u"t"_s);
    // A sheet that must be shown all the same takes what is there for typed.
    rig.Compose(u"りん"_s);
    rig.box.EndComposition();
    EXPECT_FALSE(rig.box.IsComposing());
    EXPECT_EQ(rig.box.Text(), u"2/農業りん"_s);
    QTest::keyClick(&rig.box, Qt::Key_Space);
    EXPECT_EQ(rig.TakeKeys(), u"t2"_s);
}

TEST(SheetBox, AsksForLatinLettersOutsideOfTexts) {
    Rig rig;
    const auto latin = [&] { return bool(rig.box.inputMethodQuery(Qt::ImHints).toInt() & Qt::ImhLatinOnly); };
    const QString text = u"[a/b]2/x/3/*a/b*/\r\n1"_s;
    rig.box.SetText(text);
    for (int caret = 0; caret <= text.size(); ++caret) {
        rig.box.SetCaret(caret);
        const bool inside = (caret >= 7 && caret <= 8) || (caret >= 11 && caret <= 16);
        EXPECT_EQ(latin(), !inside) << caret;
    }
    rig.box.SetText(QString());
    QTest::keyClicks(&rig.box, u"2/"_s);
    EXPECT_FALSE(latin());
    QTest::keyClicks(&rig.box, u"x/"_s);
    EXPECT_TRUE(latin());
}

TEST(SheetBox, CopiesPlainAndRichText) {
    Rig rig;
    rig.box.ShowSheet(Sheet(u"3{0}-{4}|{0}2{0}/農業/{1}"_s));
    rig.box.SetCaret(99);
    QTest::keyClicks(&rig.box, u"{"_s);
    QTest::keyClick(&rig.box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&rig.box, Qt::Key_C, Qt::ControlModifier);
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(data->text(), u"3-\n2/農業/{"_s);
    const QString rtf = QString::fromLatin1(data->data(u"text/rtf"_s));
    EXPECT_TRUE(rtf.contains(u"3\\cf0 \\cf4 -\\cf0 \\par \\cf0 2\\cf0 \\cf1 /\\u-28750?\\u26989?/\\cf0 \\{"_s))
        << qPrintable(rtf);
}

TEST(SheetBox, TellsWhenItIsLeft) {
    QWidget window;
    Rig rig;
    rig.box.setParent(&window);
    auto* other = new QPushButton(&window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    rig.box.show();
    rig.box.setFocus();
    rig.TakeKeys();
    other->setFocus();
    EXPECT_EQ(rig.TakeKeys(), u"l"_s);
    rig.box.setParent(nullptr);
}

}  // namespace
