// What holds for every window: where it stands, what its words are, and which keys it takes.
#include "ui/form.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QTest>
#include <QToolTip>

#include "support/scripted_interface.h"
#include "ui/window_place.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

TEST(WindowPlace, WindowThatWouldStandBesideTheScreenStaysWhereItIs) {
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const struct {
        QPoint place;
        bool restored;
    } cases[] = {{{10, 20}, true},
                 {{-100, 20}, true},
                 {{-301, 20}, false},
                 {{10, -201}, false},
                 {{10, -50}, true},
                 {{screen.width(), 20}, false},
                 {{10, screen.height()}, false}};
    for (const auto& [place, restored] : cases) {
        SCOPED_TRACE(testing::Message() << place.x() << ' ' << place.y());
        QWidget window;
        const float twips = static_cast<float>(TwipsPerPixel(&window));
        Settings settings;
        settings.WinPos[kPosTable] = {static_cast<float>(place.x()) * twips, static_cast<float>(place.y()) * twips,
                                      300 * twips, 200 * twips};
        window.move(5, 6);
        WinPosRestore(settings, kPosTable, &window);
        EXPECT_EQ(window.pos(), restored ? place : QPoint(5, 6));
    }
}

TEST(Form, IsNoLargerThanTheScreenAndShowsItsWordsAsTheyStand) {
    ScriptedInterface user;
    QWidget window;
    const QString words = u"<img src=\"file:///etc/hostname\"> & <b>題</b>"_s;
    auto* label = new QLabel(words, &window);
    SetUpForm(&window, user, 0);
    window.resize(5000, 4000);
    window.show();
    const QSize room = window.screen()->availableSize();
    EXPECT_LE(window.width(), room.width());
    EXPECT_LT(window.height(), room.height());
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    QToolTip::showText({10, 10}, words, &window);
    int tips = 0;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* tip = qobject_cast<QLabel*>(widget);
        if (!tip || !tip->inherits("QTipLabel")) continue;
        EXPECT_EQ(tip->textFormat(), Qt::PlainText);
        EXPECT_EQ(tip->text(), words);
        ++tips;
    }
    EXPECT_EQ(tips, 1);
    QToolTip::hideText();
    window.setEnabled(false);
    EXPECT_FALSE(window.close()) << "something long runs";
}

TEST(Form, LetterOfADisabledItemIsThatOfTheOneThatCanBeUsed) {
    ScriptedInterface user;
    QWidget window;
    auto* menu = new QMenu(&window);
    QAction* off = menu->addAction(u"回答入力(&I)"_s);
    QAction* on = menu->addAction(u"保存間隔の設定(&I)"_s);
    off->setEnabled(false);
    SetUpForm(&window, user, 0);
    window.show();
    int pressed = 0;
    QObject::connect(on, &QAction::triggered, &window, [&pressed] { ++pressed; });
    menu->popup({0, 0});
    QTest::keyClick(menu, Qt::Key_I);
    EXPECT_EQ(pressed, 1);
    EXPECT_FALSE(menu->isVisible());
}

}  // namespace
}  // namespace quibra
