#include "ui/help_viewer.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTextBrowser>
#include <set>

#include "core/help_topics.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "ui/accessibility.h"
#include "ui/frm_help.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

TEST(HelpBook, EveryTopicHasAPageAndEveryLinkLeadsToOne) {
    const HelpBook book;
    std::set<int> topics;
    for (const HelpPage& page : book.Pages()) {
        EXPECT_TRUE(topics.insert(page.topic).second) << qPrintable(page.name);
        const QString html = book.Html(page);
        EXPECT_TRUE(html.startsWith(u"<h1>"_s + page.title + u"</h1>"_s)) << qPrintable(page.name);
        static const QRegularExpression kLink(u"href=\"([^\"]+)\""_s);
        for (const auto& link : kLink.globalMatch(html))
            EXPECT_TRUE(book.PageNamed(link.captured(1))) << qPrintable(link.captured(1));
    }
    for (const int topic : {kHelpContents, kHelpFirstSteps, kHelpMain, kHelpFiles, kHelpLoadFailure, kHelpLock,
                            kHelpSettings, kHelpDialogs, kHelpProgress, kHelpLines, kHelpLimit, kHelpTotal, kHelpResult,
                            kHelpEssay, kHelpOutput, kHelpCommandLine, kHelpKeys, kHelpGlossary})
        EXPECT_TRUE(topics.contains(topic)) << topic;
}

TEST(HelpViewer, ShowsTopicsSearchesAndGoesBack) {
    ScriptedInterface ui;
    HelpViewer viewer(ui);
    viewer.ShowTopic(kHelpLock);
    QWidget* window = nullptr;
    for (QWidget* each : QApplication::topLevelWidgets())
        if (each->objectName() == u"frmHelp") window = each;
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(window->windowTitle(), u"データ隠蔽 - クイブラのヘルプ"_s);
    EXPECT_EQ(UnnamedControls(window), QStringList());

    QTest::keyClick(window->focusWidget(), Qt::Key_F, Qt::ControlModifier);
    auto* search = window->findChild<QLineEdit*>(u"txtSearch"_s);
    auto* list = window->findChild<QListWidget*>(u"lstPages"_s);
    EXPECT_TRUE(search->hasFocus());
    const int all = list->count();
    EXPECT_EQ(list->currentItem()->text(), u"データ隠蔽"_s);
    search->setText(u"除く 必須"_s);
    ASSERT_GE(list->count(), 1);
    EXPECT_LT(list->count(), all);
    EXPECT_TRUE(list->item(0)->text().startsWith(u"限定条件\n"_s));
    EXPECT_EQ(list->currentRow(), -1) << "the page shown is not among the hits";
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_TRUE(window->findChild<QTextBrowser*>(u"txtPage"_s)->toPlainText().startsWith(u"限定条件"_s));
    QTest::mouseClick(window->findChild<QPushButton*>(u"cmdBack"_s), Qt::LeftButton);
    EXPECT_EQ(window->windowTitle(), u"データ隠蔽 - クイブラのヘルプ"_s);
    EXPECT_FALSE(window->findChild<QPushButton*>(u"cmdBack"_s)->isEnabled());
    search->setText(u"ありえない言葉"_s);
    EXPECT_EQ(list->count(), 0);
    EXPECT_TRUE(window->findChild<QWidget*>(u"lblNone"_s)->isVisible());
    viewer.ShowTopic(9999);
    EXPECT_EQ(window->windowTitle(), u"クイブラのヘルプ"_s);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return})
        QTest::keyClick(window->focusWidget(), key);
    EXPECT_EQ(window->windowTitle(), u"はじめの一歩 - クイブラのヘルプ"_s) << "the first link of the contents";
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace quibra
