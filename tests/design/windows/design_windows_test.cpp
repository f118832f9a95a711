// The windows of a questionnaire as a person meets them: by their keys and buttons.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTemporaryDir>

#include "core/code_page.h"
#include "core/settings.h"
#include "design/question_listing.h"
#include "design/windows/frm_about.h"
#include "design/windows/frm_new.h"
#include "design/windows/frm_question.h"
#include "design/windows/frm_quota.h"
#include "design/windows/frm_table.h"
#include "session/survey_file.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/windows/scripted_desk.h"
#include "support/windows/scripted_steps.h"
#include "support/windows/when_asked.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

template <typename T>
T* Usable(const QWidget& window, const QString& name) {
    T* control = window.findChild<T*>(name);
    EXPECT_TRUE(control && control->isVisible() && control->isEnabled()) << qPrintable(name);
    return control;
}

void Press(const QWidget& window, const QString& name) {
    QTest::mouseClick(Usable<QWidget>(window, name), Qt::LeftButton);
}

QStringList Rows(const QWidget& window, const QString& name) {
    QStringList rows;
    const auto* list = window.findChild<QListWidget*>(name);
    for (int i = 0; i < list->count(); ++i)
        rows += list->item(i)->text();
    return rows;
}

// Lets a test act while something long runs.
class BusyUser : public ScriptedInterface {
  public:
    std::function<void()> meanwhile;

    void LetEventsRun() override {
        if (meanwhile) meanwhile();
    }
};

class DesignWindows : public testing::Test {
  protected:
    QTemporaryDir folder;
    BusyUser user;
    SurveySession session{user, folder.path()};
    ScriptedDesk desk;

    void Show(QWidget& window) {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        EXPECT_EQ(UnnamedControls(&window), QStringList());
    }
    void LoadSample() {
        QString path = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");
        ASSERT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
        session.ChangedOff();
        user.TakeTranscript();
    }
    // Keys go where the focus is, as at a desk.
    static void Type(QWidget& window, const QString& text, Qt::Key key = Qt::Key_Return) {
        if (!text.isEmpty()) QTest::keyClicks(window.focusWidget(), text);
        QTest::keyClick(window.focusWidget(), key);
    }
};

TEST_F(DesignWindows, AQuestionnaireIsTypedWithoutTheMouse) {
    session.NewSurvey();
    FrmQuestion window(session, desk);
    Show(window);
    QTest::keyClick(window.focusWidget(), Qt::Key_End);
    Type(window, QString(), Qt::Key_Tab);
    for (int q = 2; q <= 4; ++q) {
        SCOPED_TRACE(q);
        ASSERT_EQ(window.focusWidget()->objectName(), u"InsertQuestion"_s);
        user.inputAnswers = {u"2"_s};
        Type(window, QString());
        Type(window, u"name%1"_s.arg(q));
        Type(window, u"body"_s);
        Type(window, u"limit"_s, Qt::Key_Tab);
        Type(window, u"yes"_s);
        Type(window, u"no"_s);
        EXPECT_TRUE(session.survey.Questions[q - 1].Text.startsWith(u"name%1\rbody\rlimit\r"_s.arg(q)));
        EXPECT_EQ(session.survey.Choices(1, q - 1).Text, u"yes"_s);
        EXPECT_EQ(session.survey.Choices(2, q - 1).Text, u"no"_s);
    }
    EXPECT_EQ(session.survey.QuestionCount, 4);
    QTest::keyClick(&window, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(window.findChild<QListWidget*>(u"lstQno"_s)->currentRow(), 3);

    // A column of cells: the first fills what is empty, the others are added.
    Press(window, u"InsertChoice"_s);
    QApplication::clipboard()->setText(u"north\nsouth\neast\n"_s);
    QTest::keySequence(Usable<QLineEdit>(window, u"ChoiceText"_s), QKeySequence::Paste);
    QStringList choices;
    for (int c = 1; c < session.survey.Questions[3].ChoiceCount; ++c)
        choices += session.survey.Choices(c, 3).Text;
    EXPECT_EQ(choices, QStringList({u"north"_s, u"south"_s, u"east"_s, u"yes"_s, u"no"_s}));

    WhenAsked([](QWidget& box) {
        box.findChild<QPlainTextEdit*>()->setPlainText(u"west\nnowhere"_s);
        Press(box, u"cmdDo"_s);
    });
    Press(window, u"cmdAuto"_s);
    EXPECT_EQ(Rows(window, u"lstCno"_s).size(), 9);
    WhenAsked([](QWidget& box) {
        Press(box, u"cmdAll"_s);
        EXPECT_EQ(box.findChild<QSpinBox*>()->value(), 7);
        Press(box, u"cmdClose"_s);
    });
    Press(window, u"cmdQAnum"_s);
    EXPECT_EQ(session.survey.Questions[3].Anum, 7);

    user.messageAnswers = {Answer::Ok};
    WhenAsked([](QWidget& box) { Press(box, u"cmdOK"_s); });
    Press(window, u"cmdDo"_s);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_TRUE(session.IsChanged());
}

TEST_F(DesignWindows, AnEditOverSamplesAsksOnceAndIsTakenBackOrWritten) {
    LoadSample();
    const int questions = session.survey.QuestionCount;
    const QStringList limits = {session.survey.Questions[0].Text, session.survey.Questions[1].Text};
    for (const bool finish : {false, true}) {
        SCOPED_TRACE(finish);
        FrmQuestion window(session, desk);
        Show(window);
        EXPECT_EQ(Rows(window, u"lstQno"_s).size(), questions + 1);
        EXPECT_FALSE(window.findChild<QWidget*>(u"lblChanged"_s)->isVisible());
        EXPECT_TRUE(window.findChild<QWidget*>(u"lblRewrite"_s)->isVisible());

        // Refused: the box goes back.
        Press(window, u"chkStatus_2"_s);
        EXPECT_FALSE(window.findChild<QCheckBox*>(u"chkStatus_2"_s)->isChecked());
        user.messageAnswers = {Answer::Ok, Answer::Ok};
        Press(window, u"DeleteQuestion"_s);
        EXPECT_EQ(session.survey.QuestionCount, questions - 1);
        EXPECT_TRUE(window.findChild<QWidget*>(u"lblChanged"_s)->isVisible());
        user.TakeTranscript();
        Press(window, u"InsertChoice"_s);
        EXPECT_EQ(user.TakeTranscript(), QStringList());

        user.messageAnswers = {Answer::Ok};
        if (finish) WhenAsked([](QWidget& box) { Press(box, u"cmdOK"_s); });
        if (finish)
            Press(window, u"cmdDo"_s);
        else
            QTest::keyClick(&window, Qt::Key_Escape);
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(session.survey.QuestionCount, finish ? questions - 1 : questions);
        EXPECT_EQ(session.survey.Questions[0].Text, limits[finish ? 1 : 0]);
        EXPECT_EQ(session.IsChanged(), finish);
    }
}

TEST_F(DesignWindows, ARewriteLeavesNothingButItsCancel) {
    LoadSample();
    FrmQuestion window(session, desk);
    Show(window);
    user.messageAnswers = {Answer::Ok, Answer::Ok, Answer::Ok, Answer::Ok};
    Press(window, u"DeleteQuestion"_s);
    WhenAsked([](QWidget& box) { Press(box, u"cmdOK"_s); });
    QString caption;
    user.meanwhile = [&] {
        if (!caption.isEmpty()) return;
        caption = window.findChild<QPushButton*>(u"cmdDo"_s)->text();
        EXPECT_FALSE(window.findChild<QWidget*>(u"Frame1"_s)->isVisible());
        EXPECT_FALSE(window.findChild<QWidget*>(u"cmdDo"_s)->isEnabled());
        Press(window, u"cmdCancel"_s);
    };
    Press(window, u"cmdDo"_s);
    EXPECT_TRUE(caption.endsWith(u'%')) << qPrintable(caption);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(session.survey.FileName, u"保存できません"_s);
}

TEST_F(DesignWindows, TheConditionOfAQuestionIsPickedInItsEditor) {
    LoadSample();
    FrmQuestion window(session, desk);
    Show(window);
    window.findChild<QListWidget*>(u"lstQno"_s)->setCurrentRow(1);
    user.messageAnswers = {Answer::Ok};
    WhenAsked(
        [](QWidget& box) {
            Press(box, u"cmdWrite_3"_s);
            Press(box, u"cmdClose"_s);
        },
        "quibra::FrmLimit");
    Press(window, u"lblQLimit"_s);
    EXPECT_NE(session.survey.QLimit(1, 1).a, 0);
    EXPECT_NE(window.findChild<QLabel*>(u"lblQLimit"_s)->text(), u"限定条件はありません"_s);
    Press(window, u"cmdDirUp"_s);
    EXPECT_EQ(session.survey.QLimit(1, 1).a, 0);
}

TEST_F(DesignWindows, TitleAndMakerAreTakenOverAndTheTypingIsMeasured) {
    LoadSample();
    FrmAbout window(session);
    Show(window);
    const auto text = [&](const QString& name) { return window.findChild<QLabel*>(name)->text(); };
    EXPECT_EQ(text(u"lblrpnum"_s), u"サンプル数 %1 人"_s.arg(session.survey.SampleCount()));
    Press(window, u"cmdDo"_s);
    EXPECT_TRUE(text(u"lblAnswer"_s).endsWith(u" 個"_s)) << qPrintable(text(u"lblAnswer"_s));
    EXPECT_TRUE(text(u"lblEssay"_s).endsWith(u" 文字"_s));
    window.findChild<QLineEdit*>(u"txtTitle"_s)->selectAll();
    QTest::keyClicks(window.findChild<QLineEdit*>(u"txtTitle"_s), u"town"_s);
    Press(window, u"cmdClose"_s);
    EXPECT_EQ(session.survey.Title, u"town"_s);
    EXPECT_TRUE(session.IsChanged());
}

TEST_F(DesignWindows, TheRangeOfIDsIsSortedAndBounded) {
    session.ReadSettings(folder.filePath(u"quibra.ini"_s));
    session.NewSurvey();
    FrmQuota window(session);
    Show(window);
    const auto type = [&](const QString& from, const QString& to) {
        window.findChild<QLineEdit*>(u"txtFrom"_s)->setText(from);
        window.findChild<QLineEdit*>(u"txtTo"_s)->setText(to);
        Press(window, u"Do"_s);
    };
    type(u"4294967296"_s, u"1"_s);
    EXPECT_EQ(user.TakeTranscript(),
              QStringList{u"message 48 クイブラ: 割り当ての範囲は 0 から 4294967295 までです。 -> Ok"_s});
    EXPECT_TRUE(window.isVisible());
    type(u"900"_s, u"100"_s);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(session.survey.QuotaFirst, 100);
    EXPECT_EQ(session.survey.QuotaLast, 900);
    EXPECT_EQ(SettingsRead(folder.filePath(u"quibra.ini"_s)).QuotaLast, 900);
}

TEST_F(DesignWindows, TheListingIsReadCopiedAndWritten) {
    LoadSample();
    FrmTable window(session);
    Show(window);
    EXPECT_EQ(Rows(window, u"lstQno"_s).size(), session.survey.QuestionCount);
    QTest::keyClick(window.focusWidget(), Qt::Key_Down);
    window.findChild<QAction*>(u"mnuListQuesCopy"_s)->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), QuestionListing(session.survey, 1).replace(u"\r\n"_s, u"\n"_s));
    const auto written = [&](const QString& command) {
        user.fileAnswers = {folder.filePath(command)};
        window.findChild<QAction*>(command)->trigger();
        EXPECT_EQ(user.TakeTranscript().last(), u"message 0 クイブラ: 終了しました -> Ok"_s);
        QFile file(folder.filePath(command));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return DecodeCodePage(file.readAll());
    };
    user.questionAnswers = {0, 2};
    EXPECT_EQ(written(u"mnuOutput"_s), QuestionsListing(session.survey, 0, 2));
    EXPECT_EQ(written(u"mnuOutputQuestion"_s), QuestionText(session.survey));
    // A survey that became smaller behind the window's back.
    session.NewSurvey();
    session.Refresh(SurveySession::Change::Definition);
    EXPECT_EQ(Rows(window, u"lstQno"_s).size(), session.survey.QuestionCount);
    QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(DesignWindows, ANewSurveyGoesThroughItsStepsToAFile) {
    for (const bool uses : {false, true}) {
        SCOPED_TRACE(uses);
        LoadSample();
        const int questions = session.survey.QuestionCount;
        ScriptedSteps steps;
        FrmNew window(session, steps);
        Show(window);
        const QWidget* base = window.findChild<QWidget*>(u"fraBase"_s);
        EXPECT_FALSE(base->isVisible());
        Press(window, u"cmdNext_0"_s);
        EXPECT_TRUE(base->isVisible());
        if (uses) Usable<QAbstractButton>(window, u"optUse"_s)->click();
        for (int step = 0; step < 5; ++step)
            Press(window, u"cmdNext_0"_s);
        EXPECT_EQ(steps.shown, QStringList({u"close"_s, u"about"_s, u"questions"_s, u"lines"_s, u"quota"_s}));
        EXPECT_EQ(window.findChild<QLabel*>(u"lblTitle"_s)->text(), u"アンケートの設定が終わりました"_s);
        QTest::keyClick(&window, Qt::Key_Escape);  // the answer to the question is No
        EXPECT_TRUE(window.isVisible());
        user.fileAnswers = {folder.filePath(u"made%1.qb"_s.arg(uses))};
        Press(window, u"cmdNext_0"_s);
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(session.survey.FileName, folder.filePath(u"made%1.qb"_s.arg(uses)));
        EXPECT_EQ(session.survey.SampleCount(), 0);
        EXPECT_EQ(session.survey.QuestionCount == questions, uses);
    }
}

}  // namespace
}  // namespace quibra
