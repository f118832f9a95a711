#include "tabulation/windows/frm_total.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <deque>

#include "core/settings.h"
#include "session/survey_file.h"
#include "session/survey_session.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/windows/form_driver.h"
#include "support/windows/scripted_desk.h"
#include "support/windows/when_asked.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Questions of the sample survey of 21,483 people.
constexpr int kMarital = 1;
constexpr int kAge = 2;
constexpr int kRace = 3;
constexpr int kIncome = 4;
constexpr int kParty = 5;

// A line as the condition editor's buttons write it: 3 必須, 1 又は, 4 除く, 2 から.
struct Written {
    int kind;
    int q;
    int c;
};

class FrmTotalTest : public testing::Test {
  protected:
    void SetUp() override {
        QString path = QStringLiteral(QUIBRA_SOURCE_DIR "/tests/data/gss.qb");
        ASSERT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
        ui.TakeTranscript();
        form = new FrmTotal(session, windows, desk);
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    }
    void TearDown() override {
        // It may be closed by then.
        delete form;
    }

    template <typename T>
    T* Control(const char* name) {
        return Usable<T>(form, QString::fromLatin1(name));
    }
    void Press(const char* name) { quibra::Press(form, QString::fromLatin1(name)); }
    void Mark(const char* name) { quibra::Mark(form, QString::fromLatin1(name)); }
    void Choose(const char* name, int row) { Choose(Control<QComboBox>(name), row); }
    static void Choose(QComboBox* box, int row) {
        QTest::keyClick(box, Qt::Key_Home);
        for (int i = 0; i < row; ++i)
            QTest::keyClick(box, Qt::Key_Down);
        EXPECT_EQ(box->currentIndex(), row);
    }
    QString Shown(const char* name) { return form->findChild<QComboBox*>(QString::fromLatin1(name))->currentText(); }
    QStringList Limits() {
        QStringList rows;
        const auto* list = form->findChild<QListWidget*>(u"lstLimit"_s);
        for (int row = 0; row < list->count(); ++row)
            rows += list->item(row)->text();
        return rows;
    }
    bool IsMarked(const char* name) {
        return form->findChild<QAbstractButton*>(QString::fromLatin1(name))->isChecked();
    }

    // Writes the lines into the condition editor that the next action opens, and leaves it by its button.
    void WriteConditionNext(std::vector<Written> lines) {
        auto* timer = new QTimer(form);
        QObject::connect(timer, &QTimer::timeout, timer, [this, timer, lines = std::move(lines)] {
            QWidget* editor = QApplication::activeModalWidget();
            if (!editor) return;
            timer->deleteLater();
            timer->stop();
            ++editorsSeen;
            for (const Written& line : lines) {
                Choose(editor->findChild<QComboBox*>(u"lstQno"_s), line.q);
                auto* choices = editor->findChild<QListWidget*>(u"lstCno"_s);
                QTest::keyClick(choices, Qt::Key_Home);
                for (int c = 0; c < line.c; ++c)
                    QTest::keyClick(choices, Qt::Key_Down);
                QTest::mouseClick(editor->findChild<QPushButton*>(u"cmdWrite_%1"_s.arg(line.kind)), Qt::LeftButton);
            }
            QTest::mouseClick(editor->findChild<QPushButton*>(u"cmdClose"_s), Qt::LeftButton);
        });
        timer->start(1);
    }

    // The cells of the current result window against those of the same total done without windows.
    void ExpectResult(const TotalOption& option, TotalView view = {}) {
        TotalMonitor silent;
        ColumnWidths widths = kDefaultColumnWidths;
        TotalSheet expected(session.survey, session.ui, silent, widths);
        expected.view = view;
        expected.result.RefQno = form->Sheet().Sheet().result.RefQno;
        expected.DoTotal(option);
        const ResultGrid& grid = form->Sheet().Sheet().grid;
        ASSERT_EQ(grid.Rows(), expected.grid.Rows());
        ASSERT_EQ(grid.Columns(), expected.grid.Columns());
        for (int row = 0; row < grid.Rows(); ++row)
            for (int column = 0; column < grid.Columns(); ++column)
                ASSERT_EQ(grid.Text(column, row), expected.grid.Text(column, row)) << column << ' ' << row;
    }

    ScriptedInterface ui;
    SurveySession session{ui, QString()};
    Settings& settings = session.settings;
    ScriptedDesk desk;
    ResultWindows windows{session, desk};
    QPointer<FrmTotal> form;
    int editorsSeen = 0;
};

TotalOption Table(int fromQno, int toQno) {
    TotalOption option;
    option.FromQno = static_cast<qint16>(fromQno);
    option.ToQno = static_cast<qint16>(toQno);
    return option;
}

LimitLine Line(int kind, int q, int c) {
    return {static_cast<qint16>(kind), PackPosition(q, c)};
}

const QString kEnd = u"以上↑"_s;

}  // namespace

// The whole road, from the first question to the second result window and back to the first.
TEST_F(FrmTotalTest, CrossesFreeConditionsAndEssayListsAreTotalledAsDescribedAndComeBackWithTheirWindow) {
    EXPECT_EQ(Control<QLineEdit>("txtNname")->text(), u"(題名)"_s);
    EXPECT_EQ(Limits(), QStringList({u"条件なし"_s, kEnd}));
    Press("cmdTotal_0");
    ExpectResult(Table(0, 0));
    FrmGridBase* first = &form->Sheet();

    Choose("cmbQno", kParty);
    EXPECT_EQ(Control<QComboBox>("cmbToQno")->currentIndex(), kParty);
    Choose("cmbXQno", kRace);
    EXPECT_TRUE(IsMarked("optCross_0"));
    const int races = session.survey.Questions[kRace].ChoiceCount;
    EXPECT_EQ(Limits().size(), races + 1);
    EXPECT_EQ(Limits()[races - 1], session.survey.Choices(0, kRace).Text);
    Press("cmdTotal_0");
    EXPECT_EQ(&form->Sheet(), first) << "更新 takes the window that is there";
    QFile file(QStringLiteral(QUIBRA_SOURCE_DIR "/tests/data/gss-totals.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject counted = QJsonDocument::fromJson(file.readAll())["cross"_L1][0]["Counts"_L1].toObject();
    const TotalSheet& sheet = first->Sheet();
    for (int L = 0; L < races; ++L)
        for (const BlockRow& row : BlockRows(session.survey, sheet.result, kParty, L)) {
            if (row.RowCode == 0) continue;  // the persons
            const QJsonObject column = counted[QString::number((L + 1) % races)].toObject();
            EXPECT_EQ(row.Figure, column[QString::number(PositionAnswer(row.RowCode))].toInt()) << L;
        }

    Mark("optCross_1");
    EXPECT_EQ(Limits().size(), 3) << "two predefined conditions";
    Control<QListWidget>("lstLimit")->setCurrentRow(2);
    WriteConditionNext({{3, kRace, 1}, {1, kRace, 2}});
    Press("cmdAddLimit");
    windows.Activated(*first);  // as some desktops do for a moment when a dialog closes
    EXPECT_TRUE(IsMarked("optCross_2"));
    EXPECT_EQ(Limits().size(), 4);

    Choose("cmbXQno", kMarital);
    Mark("optCross_2");
    EXPECT_EQ(Limits(), QStringList({u"条件なし"_s, kEnd})) << "自由な条件 starts anew";
    WriteConditionNext({{3, kRace, 1}, {1, kRace, 2}});
    Press("cmdChangeLimit");
    auto* list = Control<QListWidget>("lstLimit");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(1)).center());
    EXPECT_EQ(list->toolTip(), kEnd);
    WriteConditionNext({{3, kIncome, 4}, {2, kIncome, 8}});
    Press("cmdAddLimit");
    WriteConditionNext({{3, kMarital, 1}});
    QTest::mouseClick(Control<QLabel>("lblExLimit_0"), Qt::LeftButton);
    EXPECT_EQ(editorsSeen, 4);
    EXPECT_EQ(Control<QLabel>("lblExLimit_0")->toolTip(), session.survey.Choices(1, kMarital).Text);
    Control<QLineEdit>("txtNname")->setText(u"党派"_s);
    Choose("cmbRank", 1);
    Press("cmdTotal_1");
    FrmGridBase* second = &form->Sheet();
    EXPECT_NE(second, first);
    TotalOption option = Table(kParty, kParty);
    option.Rank = 1;
    option.Limits(1, 0) = Line(3, kMarital, 1);
    option.Limits(1, 1) = Line(3, kRace, 1);
    option.Limits(2, 1) = Line(1, kRace, 2);
    option.Limits(1, 2) = Line(3, kIncome, 4);
    option.Limits(2, 2) = Line(2, kIncome, 8);
    option.LimitCount = 2;
    ExpectResult(option);
    second->findChild<QAction*>(u"mnuSort"_s)->trigger();
    second->findChild<QAction*>(u"mnuPercent_2"_s)->trigger();
    TotalView sorted;
    sorted.sort = true;
    sorted.percent = TotalView::PercentOnly;
    ExpectResult(option, sorted);

    QTest::mouseClick(Control<QTabWidget>("tabTotal")->tabBar(), Qt::LeftButton, {},
                      Control<QTabWidget>("tabTotal")->tabBar()->tabRect(1).center());
    EXPECT_EQ(Control<QLabel>("lblExLimit_1")->text(), session.survey.Choices(1, kMarital).Text);
    Choose("cmbERank", 1);
    Choose("cmbEQno", kAge);
    EXPECT_EQ(Shown("cmbERank"), u"全順位"_s) << "the rank was the other question's";
    EXPECT_EQ(Shown("cmbECno"), u"全選択肢(無回答除く)"_s);
    Mark("optCon_1");
    ui.inputAnswers = {u"88"_s, u"86"_s};
    Mark("optCon_3");
    EXPECT_EQ(ui.TakeTranscript(), QStringList({u"input 数量の条件 | 最小値は |  |  | 0 -> 88"_s,
                                                u"input 数量の条件 | 最大値は | 88～ |  | 0 -> 86"_s}));
    EXPECT_EQ(Control<QLabel>("lblCon")->text(), u"86 ～ 88"_s);
    Press("cmdTotal_3");
    EXPECT_NE(&form->Sheet(), second);
    TotalOption essays;
    essays.TotalKind = kEssayList;
    essays.FromQno = kAge;
    essays.Limits(1, 0) = Line(3, kMarital, 1);
    essays.CrossQno = session.survey.Questions[kAge].ChoiceCount;
    essays.CrossMode = kEssayNumber;
    essays.NumLow = 86;
    essays.NumHigh = 88;
    ui.questionsAnswers = {QList<bool>{false, false, false, true, true, false, false, false, false}};
    form->Sheet().findChild<QAction*>(u"mnuRefQno"_s)->trigger();
    EXPECT_EQ(form->Sheet().Sheet().result.RefQno, std::vector({kRace, kIncome}));
    ExpectResult(essays);
    EXPECT_EQ(form->Sheet().Sheet().result.EssayRows.size(), 5U);
    EXPECT_EQ(windows.All().size(), 3U);

    second->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(second));
    QTRY_COMPARE(&form->Sheet(), second);
    EXPECT_EQ(Control<QTabWidget>("tabTotal")->currentIndex(), 0);
    EXPECT_EQ(Control<QLineEdit>("txtNname")->text(), u"党派"_s);
    EXPECT_EQ(Control<QComboBox>("cmbRank")->currentIndex(), 1);
    EXPECT_EQ(Limits().size(), 3);
    EXPECT_EQ(Control<QLabel>("lblExLimit_0")->text(), session.survey.Choices(1, kMarital).Text);
    first->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(first));
    QTRY_COMPARE(&form->Sheet(), first);
    EXPECT_TRUE(IsMarked("optCross_0"));
    EXPECT_EQ(Control<QComboBox>("cmbXQno")->currentIndex(), kRace);
    EXPECT_EQ(Limits().size(), races + 1);
    EXPECT_EQ(Control<QLabel>("lblExLimit_0")->text(), u"条件なし"_s);

    first->close();
    Press("cmdTotal_0");
    EXPECT_NE(&form->Sheet(), first) << "a closed window is replaced by a new one";
    EXPECT_TRUE(ui.Lines(u"message"_s).isEmpty());
}

TEST_F(FrmTotalTest, KeysAloneReachAndDoEverything) {
    EXPECT_EQ(form->focusWidget(), Control<QLineEdit>("txtNname"));
    EXPECT_TRUE(Control<QPushButton>("cmdTotal_1")->isDefault());
    const auto alt = [this](Qt::Key key) {
        form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form));
        QTest::keyClick(form->focusWidget(), key, Qt::AltModifier);
        QTest::qWait(150);  // the button goes down for a moment first
    };
    WriteConditionNext({{3, kRace, 2}});
    alt(Qt::Key_A);
    EXPECT_EQ(Limits().size(), 3);
    alt(Qt::Key_D);
    EXPECT_EQ(Limits().size(), 2) << "the selected row was the second one";
    alt(Qt::Key_X);
    EXPECT_TRUE(IsMarked("optCross_0"));
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        WriteConditionNext(key == Qt::Key_Space ? std::vector<Written>{{3, kRace, 2}} : std::vector<Written>{});
        QTest::keyClick(Control<QLabel>("lblExLimit_0"), key);
    }
    EXPECT_EQ(editorsSeen, 3);
    EXPECT_EQ(Control<QLabel>("lblExLimit_0")->text(), session.survey.Choices(2, kRace).Text);
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    Control<QComboBox>("cmbQno")->setFocus();
    QTest::keyClick(form->focusWidget(), Qt::Key_Return);
    ASSERT_EQ(windows.All().size(), 1U);
    ASSERT_TRUE(QTest::qWaitForWindowActive(windows.All()[0]));
    EXPECT_EQ(form->Sheet().Sheet().result.ExLimitText, session.survey.Choices(2, kRace).Text);

    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    EXPECT_EQ(form->focusWidget()->objectName(), u"cmbQno"_s) << "the total has not moved the focus";
    QTest::keyClick(form->focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_TRUE(Control<QPushButton>("cmdTotal_3")->isDefault());
    EXPECT_FALSE(form->findChild<QWidget*>(u"Frame1"_s)->isEnabled());
    alt(Qt::Key_E);
    EXPECT_TRUE(IsMarked("optCon_1"));
    ui.inputAnswers = {u"7"_s};
    alt(Qt::Key_C);
    EXPECT_EQ(Control<QLabel>("lblCon")->text(), u" ～ "_s) << "the second dialog was cancelled";
    ui.inputAnswers = {u"b"_s, u"a"_s};
    QTest::keyClick(Control<QLabel>("lblCon"), Qt::Key_Space);
    EXPECT_EQ(Control<QLabel>("lblCon")->text(), u"a ～ b"_s);
    alt(Qt::Key_L);
    EXPECT_FALSE(form->findChild<QWidget*>(u"frameELimit"_s)->isVisible());
}

TEST_F(FrmTotalTest, EssayListThatComesToTheFrontStaysThere) {
    form->SetWindow(kEssayList);
    Choose("cmbEQno", kAge);
    Press("cmdTotal_3");
    FrmGridBase* conditioned = &form->Sheet();
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    Mark("chkRequire");
    Press("cmdTotal_3");
    for (FrmGridBase* sheet : {conditioned, &form->Sheet()}) {
        sheet->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&] { return &form->Sheet() == sheet; }));
        EXPECT_EQ(IsMarked("chkRequire"), sheet != conditioned);
        EXPECT_TRUE(sheet->isActiveWindow());
    }
}

TEST_F(FrmTotalTest, ConditionNoTotalHasUsedIsAskedAboutBeforeAResultTakesItsPlace) {
    Press("cmdTotal_1");
    FrmGridBase& sheet = form->Sheet();
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    WriteConditionNext({{3, kMarital, 1}});
    QTest::mouseClick(Control<QLabel>("lblExLimit_0"), Qt::LeftButton);
    const QString written = Control<QLabel>("lblExLimit_0")->text();
    ui.TakeTranscript();
    QTest::qWait(500);  // until what came up behind the editor counts again
    windows.Activated(sheet);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !ui.transcript.isEmpty(); }));
    EXPECT_EQ(Control<QLabel>("lblExLimit_0")->text(), written) << "Cancel is the answer where nobody gives one";
    QTest::qWait(500);
    EXPECT_EQ(ui.TakeTranscript().size(), 1) << "asked once";
}

TEST_F(FrmTotalTest, WheelOverABoxWithoutTheFocusLeavesIt) {
    auto* box = Control<QComboBox>("cmbXQno");
    const auto turn = [box] {
        const QPointF place = box->rect().center();
        QWheelEvent wheel(place, box->mapToGlobal(place), {}, QPoint(0, -120), {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &wheel);
        return box->currentIndex();
    };
    EXPECT_EQ(turn(), 0);
    box->setFocus();
    EXPECT_EQ(turn(), 1);
}

TEST_F(FrmTotalTest, ButtonWhoseLetterWasPressedWaitsForTheDialogInFrontOfIt) {
    QTest::keyClick(form->focusWidget(), Qt::Key_A, Qt::AltModifier);
    WhenAsked([](QWidget& editor) {
        QTest::qWait(150);  // longer than a button is down
        EXPECT_EQ(QApplication::activeModalWidget(), &editor);
        editor.close();
    });
    Press("cmdChangeLimit");
    WriteConditionNext({});
    EXPECT_TRUE(QTest::qWaitFor([this] { return editorsSeen == 1; }));
}

TEST_F(FrmTotalTest, ErrorsAreShownAndTheWindowGoesOn) {
    windows.option.LimitCount = kMaxLimitColumns - 1;
    form->SetTotalOption();
    WriteConditionNext({{3, kRace, 1}});
    Press("cmdAddLimit");
    const QStringList before = Limits();
    ASSERT_EQ(before.size(), kMaxLimitColumns + 1);
    Press("cmdAddLimit");
    EXPECT_EQ(ui.TakeTranscript(),
              QStringList({u"message 48 クイブラ: "_s + RuntimeError(kErrorSubscript).Text() + u" -> Ok"_s}));
    EXPECT_EQ(Limits(), before);

    form->lblCommand_Change(u"Do Total"_s);
    form->lblCommand_Change(QString());
    form->lblCommand_Change(u".limitread"_s);
    EXPECT_EQ(Control<QLabel>("lblExLimit_0")->text(), session.survey.Choices(1, kRace).Text);
    form->lblCommand_Change(u"Do Sum"_s);
    EXPECT_EQ(ui.TakeTranscript(), QStringList({u"message 0 クイブラ: 命令ミス : Do Sum -> Ok"_s}));

    // As while a total runs.
    form->setEnabled(false);
    form->close();
    EXPECT_TRUE(form->isVisible());
    form->setEnabled(true);
    settings.WinPos[kPosTotal] = {};
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_TRUE(form->isVisible()) << "the condition written above would be lost";
    QCloseEvent closeBox;
    QSpontaneKeyEvent::setSpontaneous(&closeBox);
    qApp->notify(form, &closeBox);
    EXPECT_FALSE(closeBox.isAccepted());
    ui.messageAnswers = {Answer::Ok};
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_FALSE(form && form->isVisible());
    EXPECT_EQ(ui.TakeTranscript().size(), 3);
    EXPECT_GT(settings.WinPos[kPosTotal].Width, 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(form) << "a closed window is gone";
    windows.New().DoTotal();
}

TEST_F(FrmTotalTest, RoughTotalsAreForManySamples) {
    EXPECT_TRUE(Control<QCheckBox>("chkRough")->isEnabled());
    Mark("chkRough");
    Press("cmdTotal_1");
    EXPECT_TRUE(form->Sheet().Sheet().result.option.Rough);
    while (session.survey.SampleCount() >= 200)
        session.survey.Samples.Erase(session.survey.SampleCount() - 1);
    delete form;
    form = new FrmTotal(session, windows, desk);
    EXPECT_FALSE(form->findChild<QCheckBox*>(u"chkRough"_s)->isEnabled());
}

}  // namespace quibra
