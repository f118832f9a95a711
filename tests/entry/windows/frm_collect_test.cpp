#include "entry/windows/frm_collect.h"

#include <gtest/gtest.h>

#include <QAbstractButton>

#include "support/scripted_interface.h"
#include "support/windows/form_driver.h"
#include "support/windows/when_asked.h"

using namespace Qt::StringLiterals;
using namespace quibra;

TEST(FrmCollect, ShowsAndSetsTheFlags) {
    ScriptedInterface ui;
    const QStringList options = {u"optNoChoice_%1"_s, u"optNoEssay_%1"_s, u"optExcuse_%1"_s, u"optQLimit_%1"_s};
    for (const auto& [given, wanted] : {std::pair{0, 15}, {31, 16}, {5, 10}, {10, 5}}) {
        const auto act = [&, given = given, wanted = wanted](QWidget& window, const QString& button) {
            for (qsizetype i = 0; i < options.size(); ++i) {
                const auto option = [&](int flags) {
                    return window.findChild<QAbstractButton*>(options[i].arg(flags >> i & 1));
                };
                EXPECT_TRUE(option(given)->isChecked()) << given << ' ' << i;
                Mark(&window, options[i].arg(wanted >> i & 1));
            }
            Press(&window, button);
        };
        auto flags = static_cast<qint16>(given);
        WhenAsked([&](QWidget& window) { act(window, u"cmdCancel"_s); }, "quibra::FrmCollect");
        EXPECT_FALSE(EditCorrectFlags(ui, nullptr, flags));
        EXPECT_EQ(flags, given);
        WhenAsked([&](QWidget& window) { act(window, u"cmdOK"_s); }, "quibra::FrmCollect");
        EXPECT_TRUE(EditCorrectFlags(ui, nullptr, flags));
        EXPECT_EQ(flags, wanted);
    }
    EXPECT_EQ(ui.transcript, QStringList());
}
