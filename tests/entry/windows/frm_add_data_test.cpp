#include "entry/windows/frm_add_data.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include "core/answer_store.h"
#include "entry/windows/sheet_box.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/windows/scripted_desk.h"
#include "ui/accessibility.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

// Answers with the text it is given.
class SaidCaller : public ExternCaller {
  public:
    QString CallExternal(Survey&, qint32, int q, int a) override {
        calls += QString::number(q) + u'.' + QString::number(a) + u' ';
        return said;
    }
    void Trust(const Survey&) override {}
    QString said;
    QString calls;
};

// Two one-answer questions on lines of their own, then 趣味 of three answers with a text, on which 金額 follows.
struct Rig {
    Rig() : session(ui, QString()) {
        SurveyBuilder builder;
        QStringList twelve;
        for (int c = 1; c <= 12; ++c)
            twelve += u"c%1"_s.arg(c);
        builder.Question(u"年齢"_s, u""_s, 1, twelve);
        builder.Question(u"職業"_s, u""_s, 1, {u"会社員"_s, u"その他"_s});
        builder.Status(1, 2, {kOther, kEssay});
        builder.Question(u"趣味"_s, u""_s, 3, {u"a"_s, u"b"_s, u"c"_s});
        builder.Status(2, 3, {kEssay});
        builder.Question(u"金額"_s, u""_s, 1, {u"a"_s, u"b"_s});
        builder.Lines({{0, 0}, {1, 0}, {2, 0}, {4, 0}});
        session.survey = builder.Get();
        session.survey.CorrectFlags = 15;
        session.survey.SavedTime = QDateTime::currentDateTime();
        RecalcQuotaUsed(session.survey);
    }
    void Show() {
        window = std::make_unique<FrmAddData>(session, caller, desk);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        EXPECT_EQ(UnnamedControls(window.get()), QStringList());
    }
    template <typename T = QWidget>
    T& Get(const QString& name) {
        T* found = window->findChild<T*>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return *found;
    }
    SheetBox& Box() { return Get<SheetBox>(u"txtReply"_s); }
    // To whatever has the focus.
    void Type(const QString& keys) {
        for (const QChar key : keys) {
            ASSERT_TRUE(QApplication::focusWidget());
            if (key == u'|')
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            else if (key.unicode() < 128)
                QTest::keyClicks(QApplication::focusWidget(), QString(key));
            else
                Compose(QString(), QString(key));
        }
        QCoreApplication::processEvents();
    }
    void Compose(const QString& preedit, const QString& commit) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    }
    QString Focus() const {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
    }
    QString Stored(qint32 dno) {
        SheetLook look;
        look.names = false;
        return BuildAnswerSheet(session.survey, dno, session.survey.QuestionCount, 0, look, -1, {})
            .Text.replace(u"\r\n"_s, u"|"_s);
    }
    QStringList Choices() {
        QStringList texts;
        auto& list = Get<QListWidget>(u"lstChoices"_s);
        for (int i = 0; i < list.count(); ++i)
            texts += list.item(i)->text();
        return texts;
    }
    QString Status() { return Get<QLabel>(u"stbInput"_s).text(); }

    ScriptedInterface ui;
    SurveySession session;
    SaidCaller caller;
    ScriptedDesk desk;
    std::unique_ptr<FrmAddData> window;
};

TEST(FrmAddData, KeysSheetsInByKeyboardAlone) {
    Rig rig;
    rig.Show();
    EXPECT_EQ(rig.Focus(), u"cmdNextInput"_s);
    EXPECT_FALSE(rig.Box().isEnabled());
    rig.Type(u"|"_s);
    EXPECT_EQ(rig.Focus(), u"txtReply"_s);
    EXPECT_EQ(rig.Box().Text(), u"[年齢] "_s);
    EXPECT_EQ(rig.Choices().value(0), u"年齢 "_s);
    EXPECT_EQ(rig.Choices().value(12), u"(.12.)c12"_s);
    rig.Type(u"12"_s);
    EXPECT_EQ(rig.Status(), u"変更あり"_s);
    rig.Type(u"|"_s);
    EXPECT_EQ(rig.Box().Text(), u"[年齢].12.-\r\n[職業] "_s);
    EXPECT_EQ(rig.Status(), u""_s);
    rig.Type(u"農業|"_s);
    EXPECT_EQ(rig.Stored(0), u".12.-|2/農業/-|--|"_s);
    rig.Type(u"13/山/ "_s);
    EXPECT_EQ(rig.Choices().value(0), u"趣味 ［3つまで］"_s);
    rig.Type(u"-2-"_s);
    rig.Type(u"|"_s);
    EXPECT_EQ(rig.Focus(), u"cmdNextInput"_s);
    EXPECT_EQ(rig.Stored(0), u".12.-|2/農業/-|13/山/-2-|"_s);
    // The next one is given up: it is gone once another is added.
    rig.Type(u" |"_s);
    EXPECT_EQ(rig.session.survey.SampleCount(), 2);
    QTest::keyClick(&rig.Box(), Qt::Key_N, Qt::AltModifier);
    QTest::qWait(200);
    EXPECT_EQ(rig.session.survey.SampleCount(), 2);
    EXPECT_TRUE(rig.Status().startsWith(u"空のサンプル(ID="_s)) << rig.Status().toStdString();
    EXPECT_EQ(rig.ui.Lines(u"message"_s), QStringList());
    rig.Type(u"3"_s);
    rig.window->close();
    EXPECT_EQ(rig.Stored(1), u"3-|-|--|"_s);
}

TEST(FrmAddData, KeepsWhatIsWrongUntilItIsMended) {
    Rig rig;
    rig.Show();
    rig.Type(u"|3|2/x|"_s);
    EXPECT_EQ(rig.ui.Lines(u"message"_s),
              QStringList{u"message 48 クイブラ: 記述回答文が//でくくれていません。 -> Ok"_s});
    rig.ui.TakeTranscript();
    EXPECT_EQ(rig.Box().Text(), u"[年齢]3-\r\n[職業] 2/x"_s);
    EXPECT_EQ(rig.Status(), u"記述回答文が//でくくれていません。"_s);
    EXPECT_EQ(rig.Stored(0), u"3-|-|--|"_s);
    EXPECT_EQ(rig.Focus(), u"txtReply"_s);
    rig.Box().SetCaret(99);
    rig.Type(u"/|"_s);
    EXPECT_EQ(rig.Stored(0), u"3-|2/x/-|--|"_s);
    // A failure of another kind: nothing of what was typed is lost or stored.
    rig.Type(u".9e9. "_s);
    EXPECT_EQ(rig.ui.Lines(u"message"_s), QStringList{u"message 48 クイブラ: オーバーフローしました。 -> Ok"_s});
    EXPECT_TRUE(rig.Box().Text().endsWith(u".9e9."_s));
    EXPECT_EQ(rig.Stored(0), u"3-|2/x/-|--|"_s);
}

TEST(FrmAddData, PagesSearchesAndDeletes) {
    Rig rig;
    for (int id = 1; id <= 40000; ++id)
        rig.session.survey.Samples.Insert(id - 1, id * 2);
    for (qint32 dno = 0; dno < 40000; ++dno) {
        const qint16 answer = 1;
        SetAnswers(rig.session.survey, dno, 0, 1, &answer);
    }
    rig.Show();
    auto& scroll = rig.Get<QScrollBar>(u"scrDno"_s);
    auto& dno = rig.Get<QLineEdit>(u"txtDno"_s);
    auto& id = rig.Get<QLineEdit>(u"txtIDno"_s);
    EXPECT_EQ(scroll.value(), 39999);
    EXPECT_EQ(dno.text() + rig.Get<QLabel>(u"lblMax"_s).text(), u"39999/ 39999"_s);
    scroll.setValue(33000);
    EXPECT_EQ(id.text(), u"66002"_s);
    id.setFocus();
    QTest::keyClick(&id, Qt::Key_Up);
    EXPECT_EQ(dno.text(), u"33001"_s);
    id.selectAll();
    rig.Type(u"8|"_s);
    EXPECT_EQ(rig.Focus(), u"txtReply"_s);
    EXPECT_EQ(dno.text() + u' ' + QString::number(scroll.value()), u"3 3"_s);
    dno.setFocus();
    dno.selectAll();
    rig.Type(u"50000|"_s);
    EXPECT_EQ(rig.ui.TakeTranscript(), QStringList{u"message 48 クイブラ: 番号は現在0から39999までです。 -> Ok"_s});
    dno.setFocus();
    dno.selectAll();
    rig.Type(u"3|"_s);
    id.setFocus();
    id.selectAll();
    rig.Type(u"9|"_s);
    EXPECT_EQ(rig.ui.TakeTranscript(), QStringList{u"message 48 クイブラ: 指定のＩＤが見つかりません。 -> Ok"_s});
    rig.ui.messageAnswers = {Answer::Ok};
    scroll.setValue(5);
    rig.Get<QPushButton>(u"cmdDelete"_s).click();
    EXPECT_EQ(rig.session.survey.SampleCount(), 39999);
    EXPECT_EQ(id.text(), u"10"_s);
    EXPECT_EQ(rig.Focus(), u"cmdNextInput"_s);
    EXPECT_EQ(scroll.maximum(), 39998);
}

TEST(FrmAddData, ShowsSheetsAsTheMenusSay) {
    Rig rig;
    rig.session.survey.Samples.Insert(0, 7);
    const qint16 answer = 5;
    SetAnswers(rig.session.survey, 0, 0, 1, &answer);
    rig.session.survey.LineFlag[1] = true;
    rig.caller.said = u"2"_s;
    rig.Show();
    EXPECT_EQ(rig.Box().Text(), u"[年齢]5-\r\n-\r\n--\r\n"_s);
    rig.Get<QAction>(u"mnuQDisp"_s).trigger();
    rig.Get<QAction>(u"mnuShowReturn"_s).trigger();
    EXPECT_EQ(rig.Box().Text(), u"5-¶\r\n-¶\r\n--¶\r\n"_s);
    rig.Get<QAction>(u"mnuAnswer"_s).trigger();
    rig.Get<QAction>(u"mnuSearch"_s).trigger();
    EXPECT_EQ(rig.desk.TakeAsked(), (QStringList{u"sample 0 before Q4"_s, u"search"_s}));
    // A line that calls the library: what it says stands in the sheet, and is read at the next key.
    rig.Type(u""_s);
    rig.Box().selectAll();
    rig.Type(u"6|"_s);
    EXPECT_EQ(rig.caller.calls, u"1.0 "_s);
    EXPECT_EQ(rig.Box().Text(), u"6-¶\r\n2"_s);
    EXPECT_EQ(rig.Status(), u"変更あり"_s);
    rig.window->Entry().SetDriver(u"取り込み"_s);
    EXPECT_FALSE(rig.window->close());
    EXPECT_EQ(rig.ui.TakeTranscript().last(),
              u"message 48 クイブラ: 取り込みウィンドウが開いているうちはこのウィンドウは閉じられません -> Ok"_s);
    EXPECT_EQ(rig.desk.TakeAsked(), QStringList{u"import"_s});
}

// A sheet that is typed through an input method, as by a person who never switches it off.
TEST(FrmAddData, ReadsNothingWhileAnInputMethodComposes) {
    Rig rig;
    rig.Show();
    rig.Type(u"|3|2/"_s);
    rig.Compose(u"のうぎょう"_s, QString());
    QTest::keyClick(&rig.Box(), Qt::Key_Space);
    QTest::keyClick(&rig.Box(), Qt::Key_Return);
    QTest::keyClick(&rig.Box(), Qt::Key_Up);
    EXPECT_EQ(rig.Box().Text(), u"[年齢]3-\r\n[職業] 2/"_s);
    EXPECT_EQ(rig.ui.Lines(u"message"_s), QStringList());
    rig.Compose(QString(), u"農業"_s);
    rig.Type(u"/|"_s);
    EXPECT_EQ(rig.Stored(0), u"3-|2/農業/-|--|"_s);
}

}  // namespace
