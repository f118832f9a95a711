// What holds for each window of the program, whatever it is for: every control has a name for screen readers and is
// reached by Tab, no two answer to the same letter, F1 opens a page of the help, and nothing is cut off, at the usual
// size of the letters and at one and a half times that.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMap>
#include <QMenuBar>
#include <QRadioButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <set>

#include "apps/quibra/frm_main.h"
#include "apps/quibra/frm_title.h"
#include "conditions/windows/frm_limit.h"
#include "core/help_topics.h"
#include "design/windows/frm_about.h"
#include "design/windows/frm_auto_q.h"
#include "design/windows/frm_new.h"
#include "design/windows/frm_q_anum.h"
#include "design/windows/frm_question.h"
#include "design/windows/frm_quota.h"
#include "design/windows/frm_table.h"
#include "entry/plugin_caller.h"
#include "entry/windows/frm_add_data.h"
#include "entry/windows/frm_answer.h"
#include "entry/windows/frm_collect.h"
#include "entry/windows/frm_paragraph.h"
#include "session/survey_file.h"
#include "session/windows/frm_key.h"
#include "session/windows/frm_other.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/windows/scripted_desk.h"
#include "support/windows/scripted_steps.h"
#include "support/windows/when_asked.h"
#include "tabulation/windows/frm_graph.h"
#include "tabulation/windows/frm_total.h"
#include "tabulation/windows/frm_word.h"
#include "tree_paths.h"
#include "ui/font_dialog.h"
#include "ui/frm_ask.h"
#include "ui/frm_dir_box.h"
#include "ui/frm_help.h"
#include "ui/frm_input.h"
#include "ui/frm_processing.h"
#include "ui/frm_q_box.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

// Captions that are to stay as they are; their letter goes from one to the other.
const QList<QStringList> kShared = {
    {u"optCross_1 既成限定条件でクロス(&L)"_s, u"optCross_2 自由な条件でクロス(&L)"_s},
    {u"lblList 検索する語(&S)"_s, u"cmdDo 検索開始(&S)"_s},
    {u"cmdChangeLimit 変更(&R)"_s, u"chkRough 荒く集計(&R)"_s},
    {u"lblChoiceText 選択肢文(&C):"_s, u"chkStatus_2 排他(&C)"_s, u"InsertChoice 選択肢挿入(&C)"_s},
    {u"cmdAllMulti 全てに適用(&A)"_s, u"cmdAuto 一括入力(&A)"_s},
    {u"cmdDirDown 下げる(&D)"_s, u"chkStatus_4 コード付き(&D)"_s},
    {u"cmdQAnum 変更(&N)"_s, u"chkStatus_1 数量付き(&N)"_s},
    {u"chkStatus_5 複数選択(&M)"_s, u"DeleteChoice 選択肢削除(&M)"_s},
    {u"optCon_1 記述/数量/コードがあるもの(&E)"_s, u"optCon_2 記述(&E)"_s},
    {u"cmdChangeFromQ 変更(&C)"_s, u"cmdClose 閉じる(&C)"_s},
    {u"lblInsert 質問を選んで (&S)"_s, u"lblRemove ■を選んで (&S)"_s},
    {u"optCon_3 数量(&N)"_s, u"cmdTotal_3 新規作成(&N)"_s},
};

QString Called(const QWidget* widget) {
    return QString::fromLatin1(widget->metaObject()->className()) + u' ' + widget->objectName();
}

// Letters with Alt, and what answers to each.
QMap<QString, QStringList> Mnemonics(const QWidget* window) {
    QMap<QString, QStringList> mnemonics;
    const auto add = [&](const QWidget* widget, const QString& text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty()) mnemonics[key] += widget->objectName() + u' ' + text;
    };
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(window) || widget->window() != window) continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget); label && label->buddy()) add(label, label->text());
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) add(button, button->text());
        if (const auto* group = qobject_cast<const QGroupBox*>(widget)) add(group, group->title());
        const auto* tabs = qobject_cast<const QTabBar*>(widget);
        for (int tab = 0; tabs && tab < tabs->count(); ++tab)
            add(tabs, tabs->tabText(tab));
        if (qobject_cast<const QMenuBar*>(widget))
            for (const QAction* menu : widget->actions())
                add(widget, menu->text());
    }
    return mnemonics;
}

std::set<const QWidget*> ReachedByTab(QWidget* window) {
    std::set<const QWidget*> reached;
    for (int i = 0; i < 200; ++i) {
        QWidget* focus = window->focusWidget() ? window->focusWidget() : window;
        reached.insert(focus);
        // Arrows lead on among buttons of which one is chosen.
        if (qobject_cast<QRadioButton*>(focus))
            for (const auto* other : focus->parentWidget()->findChildren<QRadioButton*>(Qt::FindDirectChildrenOnly))
                reached.insert(other);
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    return reached;
}

// Not one that Qt has put into a control.
bool IsOwnButton(const QWidget* widget) {
    const QString name = widget->objectName();
    return qobject_cast<const QAbstractButton*>(widget) && !name.isEmpty() && !name.startsWith(u"qt_");
}

bool IsCutOff(const QWidget* widget) {
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        if (label->text().isEmpty()) return false;
        if (label->wordWrap()) return label->height() < label->heightForWidth(label->width());
        return label->width() < label->sizeHint().width() || label->height() < label->sizeHint().height();
    }
    if (IsOwnButton(widget)) return widget->width() < widget->sizeHint().width();
    return qobject_cast<const QGroupBox*>(widget) && widget->width() < widget->minimumSizeHint().width();
}

class EveryWindow : public testing::TestWithParam<int> {
  protected:
    QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session{user, folder.path()};
    ScriptedDesk desk;
    ResultWindows results{session, desk};
    const QFont usual = QApplication::font();

    void SetUp() override {
        QFont font = usual;
        font.setPointSizeF(usual.pointSizeF() * GetParam() / 100);
        QApplication::setFont(font);
        QString path = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");
        ASSERT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
        session.Unlock();
    }
    void TearDown() override { QApplication::setFont(usual); }

    static void CheckLooks(QWidget* window) {
        EXPECT_EQ(UnnamedControls(window), QStringList());
        EXPECT_NE(QAccessible::queryAccessibleInterface(window)->role(), QAccessible::Client) << "only a pane";
        for (const QStringList& sharing : Mnemonics(window))
            EXPECT_TRUE(sharing.size() == 1 || kShared.contains(sharing)) << qPrintable(sharing.join(u" = "));
        EXPECT_LE(window->minimumSizeHint().width(), 1280);
        EXPECT_LE(window->minimumSizeHint().height(), 720);
        QStringList faults;
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            if (!widget->isVisibleTo(window) || widget->window() != window) continue;
            if (IsCutOff(widget)) faults += Called(widget) + u" is cut off"_s;
            if (IsOwnButton(widget) && widget->focusPolicy() == Qt::NoFocus)
                faults += Called(widget) + u" takes no focus"_s;
        }
        const auto reached = ReachedByTab(window);
        for (const QWidget* control : ControlsOf(window))
            if (control->isVisibleTo(window) && control->isEnabled() && control->focusPolicy() != Qt::ClickFocus &&
                !reached.contains(control))
                faults += Called(control) + u" is not reached by Tab"_s;
        EXPECT_EQ(faults, QStringList());
    }
    void Check(QWidget& window) {
        SCOPED_TRACE(qPrintable(window.objectName()));
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        CheckLooks(&window);
        user.TakeTranscript();
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_F1);
        const QStringList help = user.TakeTranscript();
        ASSERT_EQ(help.size(), 1);
        EXPECT_EQ(help[0], u"help %1"_s.arg(HelpBook().PageOf(help[0].section(u' ', 1).toInt()).topic));
    }
    // Made for the check alone.
    template <typename Window, typename... Arguments>
    void CheckNew(Arguments&&... arguments) {
        Window window(std::forward<Arguments>(arguments)...);
        Check(window);
    }
};

TEST_P(EveryWindow, ThatAsksServesEveryone) {
    const QStringList questions{u"Q1. 性別"_s, u"Q2. お住まいの町にどのくらい満足していますか"_s};
    CheckNew<FrmAsk>(user, u"形式はどうしますか。"_s, u"クイブラ形式\r\nｺﾝﾏ区切り"_s, u"クイブラ形式(&Q)"_s,
                     u"ｺﾝﾏ区切り(&C)"_s, nullptr);
    CheckNew<FrmInput>(user, u"保存の間隔"_s, u"時間の間隔を入力してください"_s, u"間隔"_s, u"単位：分"_s, u"30"_s,
                       nullptr);
    for (const auto pick : {FrmQBox::Pick::One, FrmQBox::Pick::Several})
        CheckNew<FrmQBox>(user, pick, u"質問を選んでください"_s, questions, nullptr);
    CheckNew<FrmDirBox>(user, folder.path(), nullptr);
    CheckNew<FrmWord>(user, QStringList{u"公園"_s}, nullptr);
    CheckNew<FrmOther>(user, nullptr);
    CheckNew<FrmTitle>(user, TitleUse::About);
    FrmProcessing processing(user, [] { return false; });
    processing.Open({.title = u"読み込み中"_s, .info = folder.path(), .caption = u"質問など"_s, .onFatalStop = {}});
    Check(processing);
    FrmHelp help(user, nullptr);
    help.ShowTopic(kHelpContents);
    Check(help);
    WhenAsked([](QWidget& dialog) {
        CheckLooks(&dialog);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QFont font;
    QColor color;
    EXPECT_FALSE(PickFont(user, nullptr, font, color));
}

TEST_P(EveryWindow, OverASurveyServesEveryone) {
    CheckNew<FrmMain>(session);
    CheckNew<FrmKey>(session, nullptr);
    session.Lock();
    CheckNew<FrmKey>(session, nullptr);
    session.Unlock();
    CheckNew<FrmLimit>(session);
    PluginCaller caller(session.ui, QString());
    CheckNew<FrmParagraph>(session, caller);
    CheckNew<FrmCollect>(user, qint16{15}, nullptr);
    CheckNew<FrmAddData>(session, caller, desk);
    CheckNew<FrmAnswer>(session);
    CheckNew<FrmLimit>(session, LimitList(), qint16{0});
    CheckNew<FrmQuestion>(session, desk);
    CheckNew<FrmQAnum>(user, 3, 1, 12, nullptr);
    CheckNew<FrmAutoQ>(user, FrmAutoQ::Add(), nullptr);
    CheckNew<FrmAbout>(session, nullptr);
    CheckNew<FrmQuota>(session, nullptr);
    CheckNew<FrmTable>(session, nullptr);
    ScriptedSteps steps;
    CheckNew<FrmNew>(session, steps, nullptr);
    CheckNew<FrmGraph>(session, results);
    for (const int kind : {1, 2}) {
        FrmTotal total(session, results, desk);
        total.SetWindow(kind);
        Check(total);
        total.DoTotal(kind);
        ASSERT_EQ(results.All().size(), kind);
        Check(*results.All().back());
    }
}

INSTANTIATE_TEST_SUITE_P(AtPercent, EveryWindow, testing::Values(100, 150));

}  // namespace
}  // namespace quibra
