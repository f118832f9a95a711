// The lock as a person meets it: by the keys and buttons of its two windows.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>

#include "session/survey_session.h"
#include "session/windows/frm_key.h"
#include "session/windows/frm_other.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/windows/form_driver.h"
#include "support/windows/when_asked.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

QString Told(const QString& text) {
    return u"message 0 クイブラ: "_s + text + u" -> Ok"_s;
}

const QString kSecondTime = Told(u"もう一度新しいパスワードを入力してください"_s);
const QString kDiffers = Told(u"間違っています。パスワードを元に戻します。"_s);
const QString kChanged = Told(u"合っています。パスワードを変更しました。"_s);
const QString kTooLong = Told(u"パスワードの字数が多すぎます（半角英文字32字以内でなければいけません）"_s);
const QString kWrongWord = Told(u"パスワードが間違っています"_s);
const QString kNotVerified = Told(u"パスワードが正しくありません"_s);

class LockWindows : public testing::Test {
  protected:
    QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session{user, folder.path()};
    std::unique_ptr<FrmKey> window;

    // The window over a survey that has not changed, in its locked look or its unlocked one.
    void Open(bool locked, const QString& password = u"abc"_s, int level = 1) {
        session.NewSurvey();
        session.survey.Password = password;
        session.survey.LockLevel = static_cast<qint16>(level);
        session.Unlock();
        if (locked) session.Lock();
        session.ChangedOff();
        window = std::make_unique<FrmKey>(session, nullptr);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    QString Frames() {
        QStringList frames;
        for (const QString& name : {u"LockF"_s, u"UnlockF"_s, u"ChangeF"_s})
            if (window->findChild<QWidget*>(name)->isVisible()) frames += name;
        return frames.join(u' ');
    }
    QString Focused() { return window->focusWidget()->objectName(); }
    void Click(const QString& name) { Press(window.get(), name); }
    void Type(const QString& box, const QString& word, bool enter = true) {
        auto* line = Usable<QLineEdit>(window.get(), box);
        line->setFocus();
        QTest::keyClicks(line, word);
        if (enter) QTest::keyClick(line, Qt::Key_Return);
    }

    // What all boxes for passwords make of what is typed, pasted and composed.
    void ExpectLettersOnly(QLineEdit* box, const QString& refusal) {
        const auto expect = [&](const QString& text, qsizetype refused) {
            EXPECT_EQ(box->text(), text);
            EXPECT_EQ(user.TakeTranscript(), QStringList(refused, Told(refusal)));
        };
        user.TakeTranscript();
        QTest::keyClicks(box, u"aBZ"_s);
        expect(u"abz"_s, 0);
        QTest::keyClicks(box, u"1 -~"_s);
        expect(u"abz"_s, 4);
        QTest::keyClick(box, Qt::Key_Backspace);
        expect(u"ab"_s, 0);
        QGuiApplication::clipboard()->setText(u"Y2z"_s);
        QTest::keyClick(box, Qt::Key_Home);
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
        expect(u"yzab"_s, 1);
        EXPECT_EQ(box->cursorPosition(), 2);
        QInputMethodEvent composed;
        composed.setCommitString(u"ｃかD"_s);
        QApplication::sendEvent(box, &composed);
        expect(u"yzdab"_s, 1);
        box->clear();
    }
};

TEST_F(LockWindows, EachBoxTakesSmallLettersAndRefusesInItsOwnWords) {
    Open(true);
    ExpectLettersOnly(Usable<QLineEdit>(window.get(), u"Word"_s), u"パスワードはすべて半角英６文字です"_s);
    Open(false);
    ExpectLettersOnly(Usable<QLineEdit>(window.get(), u"NewWord"_s), u"パスワードはすべて半角英文字です"_s);
    WhenAsked([this](QWidget& other) {
        EXPECT_EQ(other.windowTitle(), u"パスワード照合"_s);
        ExpectLettersOnly(Usable<QLineEdit>(&other, u"Text"_s), u"助言を参照せよ"_s);
        QTest::keyClick(other.focusWidget(), Qt::Key_Escape);
    });
    EXPECT_EQ(AskPassword(user, nullptr), std::nullopt);
}

TEST_F(LockWindows, LevelsTurnOffWhatTheyForbidOnceLocked) {
    const struct {
        int level;
        bool changing;
        bool showing;
    } cases[] = {{0, true, true}, {1, false, true}, {2, false, false}};
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.level);
        Open(false, u"abc"_s, (expected.level + 1) % 3);
        EXPECT_EQ(Frames(), u"LockF ChangeF"_s);
        EXPECT_EQ(Focused(), u"LV_%1"_s.arg((expected.level + 1) % 3));
        EXPECT_TRUE(Usable<QPushButton>(window.get(), u"Lock"_s)->isDefault());
        const QString level = u"LV_%1"_s.arg(expected.level);
        if (expected.level == 1)
            Usable<QRadioButton>(window.get(), level)->toggle();  // as a screen reader does
        else
            Mark(window.get(), level);
        EXPECT_EQ(session.survey.LockLevel, expected.level);
        EXPECT_TRUE(session.IsChanged());
        EXPECT_TRUE(window->isVisible());
        user.TakeTranscript();
        Click(u"Lock"_s);
        EXPECT_EQ(Frames(), u"LockF ChangeF"_s) << "unsaved work is asked about, and Cancel keeps it open";
        EXPECT_EQ(user.TakeTranscript().size(), 1);
        user.messageAnswers = {Answer::No};
        Click(u"Lock"_s);
        EXPECT_EQ(Frames(), u"UnlockF"_s);
        EXPECT_EQ(Focused(), u"Word"_s);
        EXPECT_EQ(session.menu.mnuFileSave, expected.changing);
        EXPECT_EQ(session.menu.mnuMerge, expected.changing);
        EXPECT_EQ(session.menu.mnuStatis, expected.showing);
        EXPECT_EQ(session.menu.mnuAbout, expected.showing);
        EXPECT_TRUE(session.menu.mnuKey);
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(window->isVisible());
    }
}

TEST_F(LockWindows, UnlocksWithTheExactWord) {
    Open(true, u"abc"_s, 2);
    EXPECT_EQ(Focused(), u"Word"_s);
    Type(u"Word"_s, u"abcd"_s);
    EXPECT_EQ(user.TakeTranscript(), QStringList{kWrongWord});
    EXPECT_EQ(Usable<QLineEdit>(window.get(), u"Word"_s)->text(), QString());
    Click(u"Unlock"_s);
    EXPECT_EQ(user.TakeTranscript(), QStringList{kWrongWord});
    EXPECT_EQ(Frames(), u"UnlockF"_s);
    EXPECT_FALSE(session.menu.mnuStatis);
    Type(u"Word"_s, u"ABC"_s);
    EXPECT_EQ(user.TakeTranscript(), QStringList());
    EXPECT_EQ(Frames(), u"LockF ChangeF"_s);
    EXPECT_EQ(Focused(), u"LV_2"_s);
    EXPECT_TRUE(session.menu.mnuStatis && session.menu.mnuFileSaveAs);
    EXPECT_EQ(session.survey.LockLevel, 2);
    Open(true, QString());
    Click(u"Unlock"_s);
    EXPECT_EQ(Frames(), u"LockF ChangeF"_s);
}

TEST_F(LockWindows, ANewPasswordIsEnteredTwice) {
    const QString longest(32, u'q');
    const struct {
        QString word;
        std::optional<QString> again;  // nothing for Escape
        QString password;
        QStringList told;
    } cases[] = {
        {u"New"_s, u"nEw"_s, u"new"_s, {kSecondTime, kChanged}},
        {u"new"_s, u"old"_s, u"abc"_s, {kSecondTime, kDiffers}},
        {u"new"_s, std::nullopt, u"abc"_s, {kSecondTime, kDiffers}},
        {QString(), QString(), QString(), {kSecondTime, kChanged}},
        {QString(), std::nullopt, u"abc"_s, {kSecondTime, kDiffers}},
        {longest, longest, longest, {kSecondTime, kChanged}},
    };
    for (const auto& expected : cases) {
        for (const bool byEnter : {true, false}) {
            SCOPED_TRACE(qPrintable(expected.word + u' ' + expected.again.value_or(u"Escape"_s)));
            Open(false);
            WhenAsked([&](QWidget& other) {
                EXPECT_EQ(other.focusWidget()->objectName(), u"Text"_s);
                QTest::keyClicks(other.focusWidget(), expected.again.value_or(QString()));
                QTest::keyClick(other.focusWidget(), expected.again ? Qt::Key_Return : Qt::Key_Escape);
            });
            Type(u"NewWord"_s, expected.word, byEnter);
            EXPECT_TRUE(Usable<QPushButton>(window.get(), u"ChangeKey"_s)->isDefault());
            if (!byEnter) Click(u"ChangeKey"_s);
            EXPECT_EQ(session.survey.Password, expected.password);
            EXPECT_EQ(session.IsChanged(), expected.told.contains(kChanged));
            EXPECT_EQ(user.TakeTranscript(), expected.told);
            EXPECT_EQ(Usable<QLineEdit>(window.get(), u"NewWord"_s)->text(), QString());
        }
    }
    Open(false);
    Type(u"NewWord"_s, longest + u'q');
    EXPECT_EQ(user.TakeTranscript(), QStringList{kTooLong});
    EXPECT_EQ(session.survey.Password, u"abc"_s);
    EXPECT_FALSE(session.IsChanged());
    EXPECT_EQ(Usable<QLineEdit>(window.get(), u"NewWord"_s)->text(), longest + u'q');
}

TEST_F(LockWindows, AnotherWindowAsksForThePassword) {
    const auto verify = [this](const QString& word, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        WhenAsked([&](QWidget& other) {
            QTest::qWait(150);  // letters with Alt work once the window has been active for a moment
            QTest::keyClicks(other.focusWidget(), word);
            QTest::keyClick(other.focusWidget(), key, modifiers);
        });
        return VerifyPassword(user, nullptr, u"abc"_s);
    };
    EXPECT_TRUE(verify(u"aBc"_s, Qt::Key_Return));
    EXPECT_TRUE(verify(u"abc"_s, Qt::Key_C, Qt::AltModifier));
    EXPECT_EQ(user.TakeTranscript(), QStringList());
    EXPECT_FALSE(verify(u"ab"_s, Qt::Key_Enter));
    EXPECT_FALSE(verify(u"abc"_s, Qt::Key_Escape));
    EXPECT_EQ(user.TakeTranscript(), (QStringList{kNotVerified, kNotVerified}));
}

}  // namespace
}  // namespace quibra
