#include "conditions/windows/frm_limit.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "conditions/limit_lists.h"
#include "conditions/windows/edit_limit.h"
#include "core/answer_store.h"
#include "core/help_topics.h"
#include "session/survey_file.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/windows/form_driver.h"
#include "support/windows/scripted_desk.h"
#include "tree_paths.h"
#include "ui/accessibility.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

enum Question { kSex = 0, kCommute = 5, kPriority = 26 };

QStringList Texts(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts += list->item(i)->text();
    return texts;
}

void ClickRow(QWidget* window, const QString& name, int row, bool twice = false) {
    auto* list = Usable<QListWidget>(window, name);
    list->scrollToItem(list->item(row));
    const QPoint place = list->visualItemRect(list->item(row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
    if (twice) QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
}

void ClickItem(QWidget* window, const QString& name, int item) {
    auto* box = Usable<QComboBox>(window, name);
    QTest::mouseClick(box, Qt::LeftButton);
    QAbstractItemView* view = box->view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view->window()));
    QTest::qWait(QApplication::doubleClickInterval() + 50);  // a box ignores a release just behind its opening
    const QModelIndex index = view->model()->index(item, 0);
    view->scrollTo(index);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
    EXPECT_EQ(box->currentIndex(), item);
}

// Keys go where the focus is, as at a desk.
void Type(QWidget* window, std::initializer_list<int> keys) {
    for (const int key : keys)
        QTest::keyClick(window->focusWidget(), static_cast<Qt::Key>(key));
}

// Alt + a letter. The button goes down for a moment first.
void TypeMnemonic(QWidget* window, Qt::Key letter) {
    QTest::keyClick(window->focusWidget(), letter, Qt::AltModifier);
    QTest::qWait(150);
}

QString FocusName(const QWidget* window) {
    return window->focusWidget()->objectName();
}

class FrmLimitTest : public testing::Test {
  protected:
    FrmLimitTest() : session(ui, QString()) {
        QString path = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");
        EXPECT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
        ui.TakeTranscript();
    }

    static void Open(QWidget& window) {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::qWait(150);  // letters with Alt work once the window has been active for a moment
        EXPECT_EQ(UnnamedControls(&window), QStringList());
    }

    // Runs EditLimit and does `act` in its window.
    void Edit(LimitList& list, qint16 mode, const std::function<void(QWidget*)>& act) {
        bool acted = false;
        QTimer::singleShot(0, &timerOwner_, [&] {
            QWidget* window = QApplication::activeModalWidget();
            ASSERT_TRUE(window && window->objectName() == u"frmLimit"_s);
            ASSERT_TRUE(QTest::qWaitForWindowActive(window));
            EXPECT_EQ(UnnamedControls(window), QStringList());
            act(window);
            acted = true;
            if (window->isVisible()) static_cast<QDialog*>(window)->done(QDialog::Rejected);
        });
        EditLimit(session, desk, nullptr, list, mode);
        EXPECT_TRUE(acted);
    }

    // How many samples remember the predefined condition wrongly.
    int Stale(int k) const {
        LimitList list(session.survey.PreLimit.Column(k));
        list[0].b = 0;
        int stale = 0;
        for (qint32 dno = 0; dno < session.survey.SampleCount(); ++dno)
            stale += TestLimit(session.survey, dno, list) != SampleHasPreLimit(session.survey, dno, k);
        return stale;
    }

    ScriptedInterface ui;
    ScriptedDesk desk;
    SurveySession session;

  private:
    QObject timerOwner_;
};

TEST_F(FrmLimitTest, APredefinedConditionIsMadeByKeyboardAlone) {
    FrmLimit window(session);
    Open(window);
    EXPECT_EQ(FocusName(&window), u"lstQno"_s);
    for (const char16_t* name : {u"lstCno", u"cmbRank", u"cmdWrite_3", u"cmdWrite_1", u"cmdWrite_4", u"cmdWrite_2",
                                 u"lstLimit", u"cmdDelete", u"cmdClear", u"lstPreEdit"}) {
        Type(&window, {Qt::Key_Tab});
        EXPECT_EQ(FocusName(&window), QString::fromUtf16(name));
    }
    auto* slots = Usable<QListWidget>(&window, u"lstPreEdit"_s);
    Type(&window, {Qt::Key_End, Qt::Key_Up});
    EXPECT_EQ(slots->currentRow(), 14);
    auto* lines = Usable<QListWidget>(&window, u"lstLimit"_s);
    EXPECT_EQ(Texts(lines), (QStringList{u"限定条件その14↓"_s, u"↑以上"_s}));

    auto* questions = Usable<QComboBox>(&window, u"lstQno"_s);
    questions->setFocus();
    for (int q = 0; q < kPriority; ++q)
        Type(&window, {Qt::Key_Down});
    Type(&window, {Qt::Key_Tab, Qt::Key_Down, Qt::Key_Down});
    TypeMnemonic(&window, Qt::Key_O);
    EXPECT_EQ(ui.TakeTranscript(),
              (QStringList{u"message 48 クイブラ: 「又は」を先頭にすることはできません。 -> Ok"_s}));
    TypeMnemonic(&window, Qt::Key_X);
    Type(&window, {Qt::Key_Return, Qt::Key_Up, Qt::Key_Tab, Qt::Key_Down});
    EXPECT_EQ(Usable<QComboBox>(&window, u"cmbRank"_s)->currentText(), u"1位で回答"_s);
    TypeMnemonic(&window, Qt::Key_T);
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"message 48 クイブラ: 『から』では順位は指定できません -> Ok"_s}));
    EXPECT_EQ(Usable<QComboBox>(&window, u"cmbRank"_s)->currentText(), u"順位不問"_s);
    EXPECT_EQ(Texts(lines),
              (QStringList{u"限定条件その14↓"_s, u"優先施策(2)高齢者福祉"_s, u"　から優先施策(3)医療"_s, u"↑以上"_s}));
    EXPECT_EQ(slots->item(14)->text(), u"高齢者福祉から医療"_s);

    // A line is taken up again, and deleted by its key.
    lines->setFocus();
    Type(&window, {Qt::Key_Home, Qt::Key_Delete});
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"beep"_s}));
    Type(&window, {Qt::Key_Down, Qt::Key_Down});
    EXPECT_EQ(Usable<QListWidget>(&window, u"lstCno"_s)->currentRow(), 3);
    Type(&window, {Qt::Key_Delete});
    EXPECT_EQ(lines->currentRow(), 1);
    EXPECT_EQ(slots->item(14)->text(), u"高齢者福祉"_s);
    Type(&window, {Qt::Key_F1});
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"help %1"_s.arg(kHelpLimit)}));

    Type(&window, {Qt::Key_Escape});
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"busy on"_s, u"busy off"_s}));
    EXPECT_EQ(Stale(14), 0);
    EXPECT_EQ(window.findChild<QPushButton*>(u"cmdClose"_s)->text(), u"94%"_s);
}

TEST_F(FrmLimitTest, APredefinedConditionIsMadeByMouseAlone) {
    FrmLimit window(session);
    Open(window);
    auto* lines = Usable<QListWidget>(&window, u"lstLimit"_s);
    EXPECT_EQ(Texts(lines).mid(1), (QStringList{u"性別(1)男性"_s, u"↑以上"_s}));
    ClickRow(&window, u"lstPreEdit"_s, 8);
    ClickItem(&window, u"lstQno"_s, kCommute);
    ClickItem(&window, u"cmbRank"_s, 2);
    ClickRow(&window, u"lstCno"_s, 5, true);
    ClickItem(&window, u"cmbRank"_s, 0);
    ClickRow(&window, u"lstCno"_s, 4);
    Press(&window, u"cmdWrite_1"_s);
    ClickRow(&window, u"lstLimit"_s, 1);
    ClickRow(&window, u"lstCno"_s, 1);
    Press(&window, u"cmdWrite_4"_s);
    EXPECT_EQ(Texts(lines),
              (QStringList{u"限定条件その8↓"_s, u"除く2位に通勤通学手段(1)徒歩"_s, u"2位に通勤通学手段(5)電車"_s,
                           u"　又は通勤通学手段(4)路線バス"_s, u"↑以上"_s}));
    ClickRow(&window, u"lstLimit"_s, 1);
    Press(&window, u"cmdDelete"_s);
    ClickRow(&window, u"lstPreEdit"_s, 0);
    Press(&window, u"cmdClear"_s);
    EXPECT_EQ(Texts(Usable<QListWidget>(&window, u"lstPreEdit"_s)).first(), u"条件なし"_s);
    Press(&window, u"cmdHelpContext"_s);
    EXPECT_EQ(ui.TakeTranscript(), (QStringList{u"help %1"_s.arg(kHelpLimit)}));
    EXPECT_GT(Stale(0), 0);
    EXPECT_GT(Stale(8), 0);
    Press(&window, u"cmdClose"_s);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(Stale(0), 0);
    EXPECT_EQ(Stale(8), 0);
    EXPECT_TRUE(session.IsChanged());
}

TEST_F(FrmLimitTest, EveryWayOutKeepsTheLinesAndBringsTheSamplesUpToDate) {
    const std::function<void(FrmLimit&)> ways[] = {
        [](FrmLimit& window) { window.close(); }, [](FrmLimit& window) { Type(&window, {Qt::Key_Escape}); },
        [](FrmLimit& window) { Press(&window, u"cmdClose"_s); }, [](FrmLimit& window) { window.GiveWay(); }};
    int k = 0;
    for (const auto& leave : ways) {
        FrmLimit window(session);
        Open(window);
        ClickRow(&window, u"lstPreEdit"_s, k);
        Press(&window, u"cmdClear"_s);
        Press(&window, u"cmdWrite_3"_s);
        std::fill_n(session.survey.Samples.Flags(), session.survey.SampleCount(), qint16{0});
        EXPECT_GT(Stale(k), 0);
        leave(window);
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(session.survey.PreLimit(1, k).a, 3);
        EXPECT_EQ(Stale(k), 0);
        EXPECT_TRUE(session.IsChanged());
        ++k;
    }
    // One that has changed nothing leaves the survey as it was when it only makes room.
    session.ChangedOff();
    FrmLimit window(session);
    Open(window);
    window.GiveWay();
    EXPECT_FALSE(window.isVisible() || session.IsChanged());
}

TEST_F(FrmLimitTest, APickedConditionReachesItsCallerOnlyByOk) {
    LimitList list;
    list[0].b = 1 << 2;
    Edit(list, kPickPreLimits, [this](QWidget* window) {
        EXPECT_EQ(window->windowTitle(), u"限定条件選択"_s);
        EXPECT_FALSE(window->findChild<QListWidget*>(u"lstPreEdit"_s)->isVisible());
        EXPECT_FALSE(window->findChild<QLabel*>(u"lblCrossInfo"_s)->isVisible());
        EXPECT_EQ(Texts(Usable<QListWidget>(window, u"lstLimit"_s)), (QStringList{u"さらに加える条件↓"_s, u"↑以上"_s}));
        ClickRow(window, u"lstPreLimit"_s, 15);
        ClickRow(window, u"lstPreLimit"_s, 2);
        // Leaving asks once something has changed, and stays unless that is confirmed.
        Type(window, {Qt::Key_Escape});
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(ui.TakeTranscript().size(), 1);
        TypeMnemonic(window, Qt::Key_A);
        EXPECT_EQ(Usable<QPushButton>(window, u"cmdClose"_s)->text(), u"ＯＫ"_s);
        Press(window, u"cmdClose"_s);
    });
    EXPECT_EQ(desk.asked, QStringList{u"close slots"_s}) << "there is one condition editor at a time";
    EXPECT_EQ(list[0].b, static_cast<qint16>(0x8000));
    EXPECT_EQ(list.LineCount(), 1);
    EXPECT_EQ(list[1], (LimitLine{3, PackPosition(kSex, 1)}));
    EXPECT_FALSE(session.IsChanged());

    const LimitList before = list;
    Edit(list, kPickForCross, [this](QWidget* window) {
        EXPECT_FALSE(window->findChild<QListWidget*>(u"lstPreLimit"_s)->isVisible());
        Usable<QLabel>(window, u"lblCrossInfo"_s);
        TypeMnemonic(window, Qt::Key_X);
        ui.messageAnswers = {Answer::Ok};
        window->close();
        EXPECT_FALSE(window->isVisible());
    });
    EXPECT_EQ(list[0].b, before[0].b);
    EXPECT_EQ(list.LineCount(), 1);
    // Nothing was changed: nothing is asked, and the mask that this picker does not show stays.
    ui.TakeTranscript();
    Edit(list, kPickLines, [](QWidget* window) { Type(window, {Qt::Key_Escape}); });
    Edit(list, kPickLines, [](QWidget* window) { Press(window, u"cmdClose"_s); });
    EXPECT_EQ(list[0].b, before[0].b);
    EXPECT_TRUE(ui.transcript.isEmpty());
}

}  // namespace
}  // namespace quibra
