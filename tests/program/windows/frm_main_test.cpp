#include "apps/quibra/frm_main.h"

#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

#include "companion/limit_terms.h"
#include "core/help_topics.h"
#include "core/settings.h"
#include "session/survey_file.h"
#include "session/survey_session.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/windows/form_driver.h"
#include "support/windows/when_asked.h"
#include "tree_paths.h"
#include "ui/accessibility.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

const QString kSample = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");

class MainWindow : public testing::Test {
  protected:
    QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session{user, folder.path()};
    std::unique_ptr<FrmMain> window;

    void SetUp() override {
        session.ReadSettings(Path(u"quibra.ini"_s));
        Make();
    }
    void Make() {
        window = std::make_unique<FrmMain>(session);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    QString Path(const QString& name) { return folder.filePath(name); }
    // A copy of the sample survey with that title and lock.
    QString PutSurvey(const QString& name, const QString& title, int lockLevel = 0) {
        ScriptedInterface nobody;
        SurveySession other(nobody, folder.path());
        QString path = kSample;
        EXPECT_EQ(SurveyLoad(other, path, kExpectSurvey), kLoaded);
        other.survey.Title = title;
        other.survey.LockLevel = static_cast<qint16>(lockLevel);
        EXPECT_TRUE(SurveySave(other, Path(name)));
        return Path(name);
    }

    QToolButton* Button(const QString& name) { return Usable<QToolButton>(window.get(), name); }
    void Click(const QString& name) { Press(window.get(), name); }
    // The menu that Alt and `key` bring up.
    QMenu* PopUp(Qt::Key key) {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::qWait(150);  // a button takes its letter again when the last press has been seen, 100 ms later
        QTest::keyClick(window.get(), key, Qt::AltModifier);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        EXPECT_TRUE(menu && QTest::qWaitForWindowExposed(menu));
        return menu;
    }
    void Close(QMenu* menu) {
        QTest::keyClick(menu, Qt::Key_Escape);
        EXPECT_FALSE(menu->isVisible());
    }
    // Brings a menu up and types the keys into it.
    void Choose(Qt::Key menuKey, std::initializer_list<Qt::Key> keys) {
        PopUp(menuKey);
        for (const Qt::Key key : keys)
            QTest::keyClick(QApplication::activePopupWidget(), key);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
    static QStringList Items(const QMenu* menu) {
        QStringList items;
        for (const QAction* action : menu->actions()) {
            if (!action->isVisible()) continue;
            items += action->isSeparator() ? u"-"_s : action->text();
            if (action->menu())
                for (const QString& item : Items(action->menu()))
                    items += u"  "_s + item;
        }
        return items;
    }
    // What can't be chosen in the three menus now.
    QStringList Disabled() {
        QStringList names;
        for (const QString& menu : {u"mnuFile"_s, u"mnuQuestion"_s, u"mnuOthers"_s})
            for (const QAction* action : window->findChild<QMenu*>(menu)->actions())
                if (!action->isSeparator() && action->isVisible() && !action->isEnabled())
                    names += action->menu() ? action->menu()->objectName() : action->objectName();
        return names;
    }
    QString Shown(const QString& label) { return window->findChild<QLabel*>(label)->text(); }
    void Drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        if (!enter.isAccepted()) return;
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &drop);
        QTest::qWait(1);
    }
};

TEST_F(MainWindow, MenusHaveTheirItemsInOrder) {
    EXPECT_EQ(UnnamedControls(window.get()), QStringList());
    QMenu* menu = PopUp(Qt::Key_F);
    EXPECT_EQ(Items(menu).join(u'\n'),
              uR"(新規作成(&N)
開く(&O)
保存(&S)
名前を付けて保存(&A)...
集計結果ﾌｧｲﾙを開く&R)
ﾌｧｲﾙ入力(&I)
  分散入力したﾌｧｲﾙ(&A)...
  クイブラ入力形式(&A)...
  区切り形式(&A)...
  ﾈｯﾄﾜｰｸｱﾝｹｰﾄ回答(&N)
ﾌｧｲﾙ出力(&U)
  ｻﾝﾌﾟﾙﾃﾞｰﾀ
  ﾈｯﾄﾜｰｸｱﾝｹｰﾄ用HTML
  ODBC[DAO]形式
-
終了(&X))"_s);
    Close(menu);
    menu = PopUp(Qt::Key_Q);
    EXPECT_EQ(Items(menu).join(u'\n'),
              uR"(質問の設定(&S)
質問一覧(&T)
ﾀｲﾄﾙと製作者名(&T)
-
回答入力(&I)
改行位置の設定(&P)
IDの範囲(&R)
回答補正の設定(&C)
保存間隔の設定(&I)
-
既成限定の設定(&L)
集計・検索(&A))"_s);
    Close(menu);
    menu = PopUp(Qt::Key_O);
    EXPECT_EQ(Items(menu).join(u'\n'),
              uR"(ｳｨﾝﾄﾞｳの位置とﾌｫﾝﾄを初期化(&R)
ﾃﾞｰﾀにﾊﾟｽﾜｰﾄﾞをつける(&P)
-
目次(&C)
ﾄﾋﾟｯｸの検索(&S)...
-
ﾊﾞｰｼﾞｮﾝ情報(&A)...)"_s);
    Close(menu);
}

TEST_F(MainWindow, MenuOpensUnderItsButtonInTheUpperHalfAndOverItInTheLower) {
    const QRect screen = window->screen()->geometry();
    for (const bool upper : {true, false}) {
        window->move(50, upper ? 20 : screen.height() / 2 + 20);
        QTest::qWait(1);
        const QToolButton* button = Button(u"cmdOthers"_s);
        const QPoint corner = button->mapToGlobal(QPoint(0, upper ? button->height() : 0));
        Click(u"cmdOthers"_s);
        QWidget* menu = QApplication::activePopupWidget();
        ASSERT_TRUE(menu);
        EXPECT_EQ(menu->pos(), corner) << "upper half: " << upper;
        Close(qobject_cast<QMenu*>(menu));
    }
}

TEST_F(MainWindow, LockLevelLeavesOnWhatItMay) {
    const QStringList changing = {u"mnuFileSaveAs"_s,  u"mnuMerge"_s,         u"mnuOutput"_s,
                                  u"mnuSetQuestion"_s, u"mnuInput"_s,         u"mnuSetParagraph"_s,
                                  u"mnuSetQuota"_s,    u"mnuSetCollection"_s, u"mnuSetLimit"_s};
    const QStringList showing = {u"mnuQuestions"_s, u"mnuAbout"_s, u"mnuStatis"_s};
    const auto sorted = [](QStringList names) {
        names.sort();
        return names;
    };
    const QStringList save = {u"mnuFileSave"_s};
    EXPECT_EQ(sorted(Disabled()), sorted(save + changing + showing));
    EXPECT_EQ(Shown(u"lblTitle"_s), u"アンケートは読み込まれていません"_s);
    EXPECT_EQ(window->windowTitle(), u"クイブラ"_s);

    window->SurveyOpen(PutSurvey(u"1.qb"_s, u"見るだけの題"_s, 1), kExpectSurvey);
    EXPECT_EQ(sorted(Disabled()), sorted(save + changing));
    EXPECT_EQ(window->windowTitle(), u"見るだけの題"_s);
    EXPECT_EQ(Shown(u"lblTitle"_s), u"見るだけの題"_s);
    EXPECT_EQ(Shown(u"lblFigures"_s), u"質問 32　・　サンプル 2000　・　施錠（見るだけ）"_s);

    // Unlocked by its empty password everything is on, the mark of a change with it.
    session.Unlock();
    EXPECT_EQ(Disabled(), QStringList());
    EXPECT_EQ(Shown(u"lblFigures"_s), u"質問 32　・　サンプル 2000　・　解錠中　・　未保存の変更あり"_s);
    session.ChangedOff();

    window->SurveyOpen(PutSurvey(u"2.qb"_s, u"秘密の題"_s, 2), kExpectSurvey);
    EXPECT_EQ(sorted(Disabled()), sorted(save + changing + showing));
    EXPECT_EQ(window->windowTitle(), u"クイブラ"_s);
    EXPECT_FALSE(Shown(u"lblTitle"_s).contains(u"秘密"_s));
    EXPECT_FALSE(window->findChild<QToolButton*>(u"cmdStatis"_s)->isEnabled());

    // A level-0 file after a locked one: unlocked by its load.
    window->SurveyOpen(PutSurvey(u"0.qb"_s, u"自由な題"_s, 0), kExpectSurvey);
    EXPECT_EQ(Disabled(), save);
}

TEST_F(MainWindow, ButtonsActOrRefuse) {
    Click(u"cmdSave"_s);
    user.fileAnswers = {kSample};
    Button(u"cmdOpen"_s)->setFocus();
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(
        user.Lines(u"message"_s),
        QStringList{
            u"message 0 クイブラ: 保存は禁止されています。アンケートを読み込んでいないか、データが壊れています -> Ok"_s});
    EXPECT_EQ(session.survey.FileName, kSample);
    user.TakeTranscript();
    Click(u"cmdListQues"_s);
    const QPointer<QWidget> table = window->findChild<QWidget*>(u"frmTable"_s);
    ASSERT_TRUE(table && table->isVisible());
    WhenAsked(
        [&](QWidget& editor) {
            EXPECT_FALSE(table && table->isVisible()) << "it shows questions that are about to change";
            user.messageAnswers = {Answer::Ok};
            QTest::keyClick(&editor, Qt::Key_Escape);
        },
        "quibra::FrmQuestion");
    window->findChild<QAction*>(u"mnuSetQuestion"_s)->trigger();
    Click(u"cmdInput"_s);
    QWidget* entry = window->findChild<QWidget*>(u"frmAddData"_s);
    ASSERT_TRUE(entry && entry->isVisible());
    Click(u"cmdStatis"_s);
    QWidget* total = window->findChild<QWidget*>(u"frmTotal"_s);
    ASSERT_TRUE(total && total->isVisible());
    Choose(Qt::Key_Q, {Qt::Key_L});
    EXPECT_TRUE(window->findChild<QWidget*>(u"frmLimit"_s)->isVisible());
    EXPECT_FALSE(total->isVisible()) << "it shows conditions that are about to change";
    QTest::qWait(1);
    EXPECT_FALSE(window->findChild<QWidget*>(u"frmTotal"_s));

    user.TakeTranscript();
    window->Command(u"Save Page"_s);
    window->Command(u"Load Page"_s);
    EXPECT_EQ(user.transcript.size(), 1);
    EXPECT_TRUE(user.transcript[0].endsWith(u"/data/samples/ | 集計結果(*.qbp)|*.qbp| -> cancel"_s));
}

TEST_F(MainWindow, NewSurveyInMemoryClosesTheWindowsOnTheOld) {
    window->SurveyOpen(kSample, kExpectSurvey);
    Click(u"cmdStatis"_s);
    window->SurveyOpen(Path(u"absent.qb"_s), kExpectSurvey);
    EXPECT_EQ(OpenForms().size(), 3) << "the survey is still there";
    QFile::copy(kSample, Path(u"cut.qb"_s));
    QFile(Path(u"cut.qb"_s)).resize(20000);
    window->SurveyOpen(Path(u"cut.qb"_s), kExpectSurvey);
    EXPECT_EQ(OpenForms(), QList<QWidget*>{window.get()}) << "the survey is broken";
}

TEST_F(MainWindow, ConditionThatLeadsBackToItsQuestionIsToldAndOutlived) {
    window->SurveyOpen(kSample, kExpectSurvey);
    session.survey.QLimit(1, 4) = SurveyBuilder::Line(kLimitAnd, 4, 1);
    user.TakeTranscript();
    Choose(Qt::Key_Q, {Qt::Key_L});
    EXPECT_EQ(user.TakeTranscript(), QStringList{u"message 48 クイブラ: オーバーフローしました。 -> Ok"_s});
    EXPECT_EQ(OpenForms(), QList<QWidget*>{window.get()});
    Click(u"cmdStatis"_s);
    EXPECT_EQ(OpenForms().size(), 3);
    EXPECT_EQ(user.TakeTranscript(), QStringList()) << "a total asks for no depth";
}

TEST_F(MainWindow, KeysCallTheCommands) {
    user.fileAnswers = {kSample};
    QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(session.survey.FileName, kSample);
    user.fileAnswers = {Path(u"copy.qb"_s)};
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(session.survey.FileName, Path(u"copy.qb"_s));
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(QFile::exists(Path(u"copy.qb~"_s))) << "nothing has changed";
    session.ChangedOn();
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(QFile::exists(Path(u"copy.qb~"_s)));
    user.TakeTranscript();
    QTest::keyClick(window.get(), Qt::Key_F1);
    EXPECT_EQ(user.transcript, QStringList{u"help %1"_s.arg(kHelpMain)});

    QSignalSpy index(window.get(), &FrmMain::HelpIndexAsked);
    QSignalSpy search(window.get(), &FrmMain::HelpSearchAsked);
    Choose(Qt::Key_O, {Qt::Key_C});
    Choose(Qt::Key_O, {Qt::Key_S});
    EXPECT_EQ(index.count() * 10 + search.count(), 11);
    user.inputAnswers = {u"12"_s};
    Choose(Qt::Key_Q, {Qt::Key_I, Qt::Key_I, Qt::Key_Return});  // the second item with this letter
    EXPECT_DOUBLE_EQ(session.settings.SaveInterval, 12.0 / 1440);

    QSignalSpy closed(window.get(), &FrmMain::Closed);
    QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(MainWindow, RecentFilesStandInTheMenuNewestFirst) {
    QStringList paths;
    for (const QString& name : {u"a&b.qb"_s, u"c.qb"_s, u"d.qb"_s, u"e.qb"_s, u"f.qb"_s})
        paths += PutSurvey(name, name);
    const auto recent = [&] {
        QMenu* menu = PopUp(Qt::Key_F);
        const QStringList items = Items(menu);
        Close(menu);
        return items.mid(items.indexOf(u"-"_s));
    };
    window->SurveyOpen(paths[0], kExpectSurvey);
    EXPECT_EQ(recent(), (QStringList{u"-"_s, u"&1 "_s + Path(u"a&&b.qb"_s), u"-"_s, u"終了(&X)"_s}));
    for (const QString& path : paths.mid(1))
        window->SurveyOpen(path, kExpectSurvey);
    Choose(Qt::Key_F, {Qt::Key_3});
    EXPECT_EQ(session.survey.FileName, paths[2]);
    EXPECT_EQ(recent(), (QStringList{u"-"_s, u"&1 "_s + paths[2], u"&2 "_s + paths[4], u"&3 "_s + paths[3],
                                     u"&4 "_s + paths[1], u"-"_s, u"終了(&X)"_s}));
    user.messageAnswers = {Answer::Ok};
    Choose(Qt::Key_O, {Qt::Key_R});
    EXPECT_EQ(recent(), (QStringList{u"-"_s, u"終了(&X)"_s}));
}

TEST_F(MainWindow, FirstFileOfADropIsOpened) {
    Drop({QUrl(u"https://example.org/a.qb"_s)});
    EXPECT_TRUE(session.IsDead());
    window->setEnabled(false);  // as while something long runs
    Drop({QUrl::fromLocalFile(kSample)});
    EXPECT_TRUE(session.IsDead());
    window->setEnabled(true);
    Drop({QUrl::fromLocalFile(kSample), QUrl::fromLocalFile(Path(u"b.qb"_s))});
    EXPECT_EQ(session.survey.FileName, kSample);
}

TEST_F(MainWindow, CloseAsksThenWritesTheSettingsAndTidiesUp) {
    const QString path = PutSurvey(u"a.qb"_s, u"題"_s);
    for (const QString& name : {u"_convert.tmp"_s, u"_result.tmp"_s, u"_other.tmp"_s})
        QFile(Path(name)).open(QFile::WriteOnly);
    QSignalSpy closed(window.get(), &FrmMain::Closed);

    window->setEnabled(false);
    EXPECT_FALSE(window->close()) << "while something long runs";
    window->setEnabled(true);

    window->SurveyOpen(path, kExpectSurvey);
    session.ChangedOn();
    user.TakeTranscript();
    EXPECT_FALSE(window->close());
    EXPECT_EQ(user.transcript,
              QStringList{u"message 35 クイブラ: アンケート「題」は変更されています。保存しますか？ -> Cancel"_s});
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(QFile::exists(Path(u"quibra.ini"_s)));
    EXPECT_TRUE(QFile::exists(Path(u"_result.tmp"_s)));

    window->move(120, 90);
    user.messageAnswers = {Answer::Yes};
    Choose(Qt::Key_F, {Qt::Key_X});
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(session.IsChanged());
    EXPECT_FALSE(QFile::exists(Path(u"_convert.tmp"_s)) || QFile::exists(Path(u"_result.tmp"_s)));
    EXPECT_TRUE(QFile::exists(Path(u"_other.tmp"_s)));
    EXPECT_EQ(SettingsRead(Path(u"quibra.ini"_s)).RecentFiles[0], path);
    const QPoint place = window->pos();
    window.reset();
    Make();
    EXPECT_EQ(window->pos(), place);
}

TEST_F(MainWindow, ModalWindowsComeAndGo) {
    QStringList seen;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, window.get(), [&] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal) return;
        seen += modal->objectName();
        EXPECT_EQ(UnnamedControls(modal), QStringList());
        window->Command(u"Load Page"_s);
        QTest::keyClick(modal, Qt::Key_Escape);
    });
    watch.start(10);
    Choose(Qt::Key_O, {Qt::Key_A});
    Choose(Qt::Key_O, {Qt::Key_P});
    EXPECT_EQ(seen, (QStringList{u"frmTitle"_s, u"frmKey"_s}));
    EXPECT_EQ(user.transcript, QStringList()) << "a command does not cut in";
}

}  // namespace
}  // namespace quibra
