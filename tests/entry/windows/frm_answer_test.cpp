#include "entry/windows/frm_answer.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>

#include "core/answer_store.h"
#include "session/survey_session.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/windows/form_driver.h"

using namespace Qt::StringLiterals;
using namespace quibra;

TEST(FrmAnswer, ASampleIsReadInWordsFromTheQuestionChosen) {
    ScriptedInterface ui;
    SurveySession session(ui, u"/tmp"_s);
    SurveyBuilder builder;
    builder.Question(u"年齢"_s, u"おいくつですか"_s, 1, {u"若い"_s, u"老い"_s});
    builder.Question(u"学校"_s, u"学校は"_s, 1, {u"高校"_s, u"大学"_s});
    builder.Sample({{2}, {1}});
    session.survey = builder.Get();
    FrmAnswer window(session);
    const auto text = [&] { return window.findChild<QPlainTextEdit*>(u"txtAnswer"_s)->toPlainText().toStdString(); };
    window.show();
    EXPECT_EQ(text(), "");
    window.ShowSample(0, 1);
    EXPECT_EQ(text(), "年齢 : (2)老い\n");
    window.ShowSample(0, 2);
    ui.questionAnswers = {-1, 1};
    Press(&window, u"cmdChangeFromQ"_s);
    EXPECT_EQ(text(), "年齢 : (2)老い\n学校 : (1)高校\n");
    Press(&window, u"cmdChangeFromQ"_s);
    Mark(&window, u"chkQ"_s);
    EXPECT_EQ(text(), "学校 学校は\n---- (1)高校\n\n");
    window.ShowSample(1, 2);
    EXPECT_EQ(text(), "");
    Press(&window, u"cmdClose"_s);
    EXPECT_FALSE(window.isVisible());
}
