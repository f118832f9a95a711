#include "entry/windows/frm_paragraph.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "core/help_topics.h"
#include "entry/extern_call.h"
#include "session/survey_session.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "ui/accessibility.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

class NotingCaller : public ExternCaller {
  public:
    QString CallExternal(Survey& survey, qint32 dno, int q, int a) override {
        notes += u"call %1 %2 %3 %4"_s.arg(survey.ExternDLL).arg(dno).arg(q).arg(a);
        survey.ExternDLL += renamed;
        return answer;
    }
    void Trust(const Survey& survey) override { notes += u"trust "_s + survey.ExternDLL; }

    QString answer;
    QString renamed;
    QStringList notes;
};

class FrmParagraphTest : public testing::Test {
  protected:
    FrmParagraphTest() {
        SurveyBuilder builder;
        builder.Question(u"性別"_s, u"<b>あなた</b>は"_s, 1, {u"男"_s, u"女"_s});
        builder.Question(QString(), u"何を"_s, 2, {u"a"_s, u"b"_s});
        session_.survey = builder.Get();
        for (int i = 1; i < 255; ++i)
            session_.survey.LineStart[i] = PackPosition(i, 0);
        session_.survey.LineStart[255] = session_.survey.LineStart[256] = session_.survey.LineStart[254];
        session_.survey.ExternDLL = u"given"_s;
        session_.Unlock();
        session_.ChangedOff();
        Show();
    }

    void Show() {
        window_ = std::make_unique<FrmParagraph>(session_, caller_);
        window_->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }
    template <typename T>
    T* Find(const char* name) {
        return window_->findChild<T*>(QString::fromLatin1(name));
    }
    QString Rows() {
        const QAbstractItemModel* rows = Find<QAbstractItemView>("lstLLocate")->model();
        QStringList texts;
        for (int row = 0; row < rows->rowCount(); ++row)
            texts += rows->index(row, 0).data().toString().section(u' ', 0, 1);
        return texts.join(u'/');
    }
    void ClickRow(int row) {
        auto* list = Find<QAbstractItemView>("lstLLocate");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(row, 0)).center());
    }
    // Which of the three can be used: "i", "r", "f", and "F" for a flag that is set.
    QString Deeds() {
        const auto* flag = Find<QCheckBox>("chkExeDLL");
        return QString(Find<QPushButton>("cmdInsert")->isEnabled() ? u"i"_s : QString()) +
               (Find<QPushButton>("cmdRemove")->isEnabled() ? u"r"_s : QString()) +
               (flag->isEnabled() ? (flag->isChecked() ? u"F"_s : u"f"_s) : QString());
    }
    void Key(Qt::Key key) {
        QTest::keyClick(window_->focusWidget(), key, Qt::AltModifier);
        QTest::qWait(150);  // the button goes down for a moment first
    }

    ScriptedInterface ui_;
    SurveySession session_{ui_, QString()};
    NotingCaller caller_;
    std::unique_ptr<FrmParagraph> window_;
};

TEST_F(FrmParagraphTest, LinesAreCutJoinedAndFlaggedByMouseAndKeys) {
    EXPECT_EQ(UnnamedControls(window_.get()), QStringList());
    EXPECT_EQ(Rows(), u"■第1行 -/Q1 性別<b>あなた</b>は/■第2行 -/Q2 質問2[1/2]/Q2 質問2[2/2]/■第3行 -/終わり"_s);
    QStringList deeds = {Deeds()};
    for (int row = 1; row < 7; ++row) {
        QTest::keyClick(window_->focusWidget(), Qt::Key_Down);
        deeds += Deeds();
    }
    EXPECT_EQ(deeds, QStringList({u"f"_s, u"i"_s, u"rf"_s, u"i"_s, u"i"_s, u"rf"_s, QString()}));
    EXPECT_FALSE(session_.IsChanged());

    ClickRow(4);
    Key(Qt::Key_P);
    EXPECT_EQ(Rows().section(u"/■"_s, 2), u"第3行 -/Q2 質問2[2/2]/■第4行 -/終わり"_s);
    EXPECT_EQ(Deeds(), u"rf"_s) << "the new line's row is chosen";
    EXPECT_TRUE(session_.IsChanged());
    Key(Qt::Key_D);
    EXPECT_EQ(Deeds(), u"rF"_s);
    EXPECT_TRUE(session_.survey.LineFlag[2]);
    EXPECT_TRUE(Rows().contains(u"■第3行 ▲DLL実行"_s));
    QTest::mouseClick(Find<QPushButton>("cmdRemove"), Qt::LeftButton);
    EXPECT_EQ(session_.survey.LineStart[2], PackPosition(2, 0));
    EXPECT_EQ(Deeds(), u"i"_s);
    ClickRow(3);
    const QString rows = Rows();
    Key(Qt::Key_P);
    EXPECT_EQ(Rows(), rows) << "a line begins there already";

    QTest::keyClick(window_.get(), Qt::Key_F1);
    EXPECT_EQ(ui_.TakeTranscript(), QStringList(u"help %1"_s.arg(kHelpLines)));
}

TEST_F(FrmParagraphTest, ProgramIsNamedTestedAndTrustedWhenTheUserNamedIt) {
    const QString warning =
        u"message 1 クイブラ: このテストはクイブラを強制終了させ、現在扱っているデータを消してしまう可能性があります。"
        u"よろしいですか？ -> "_s;
    auto* name = Find<QLineEdit>("txtDLL");
    EXPECT_EQ(name->text(), u"given"_s);
    Key(Qt::Key_T);
    EXPECT_EQ(ui_.TakeTranscript(), QStringList(warning + u"Cancel"_s));
    EXPECT_EQ(caller_.notes, QStringList());

    ui_.messageAnswers = {Answer::Ok};
    caller_.renamed = u"2"_s;
    Key(Qt::Key_T);
    EXPECT_EQ(ui_.TakeTranscript(), QStringList({warning + u"Ok"_s, u"message 0 クイブラ: OKです -> Ok"_s}));
    EXPECT_EQ(name->text(), u"given2"_s) << "the program has named another";

    Key(Qt::Key_E);
    name->selectAll();
    QTest::keyClicks(name, u"own"_s);
    EXPECT_EQ(session_.survey.ExternDLL, u"own"_s);
    ui_.messageAnswers = {Answer::Ok};
    caller_.renamed.clear();
    caller_.answer = u"a & b"_s;
    Key(Qt::Key_T);
    EXPECT_EQ(ui_.TakeTranscript(), QStringList({warning + u"Ok"_s, u"message 0 クイブラ: a & b -> Ok"_s}));
    Key(Qt::Key_C);
    EXPECT_EQ(caller_.notes,
              QStringList({u"call given 0 -1 0"_s, u"trust own"_s, u"call own 0 -1 0"_s, u"trust own"_s}));
}

TEST_F(FrmParagraphTest, UserWhoClosesItHasChangedTheSurvey) {
    Key(Qt::Key_C);
    EXPECT_TRUE(!window_->isVisible() && session_.IsChanged());
    session_.ChangedOff();
    Show();
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    EXPECT_TRUE(!window_->isVisible() && session_.IsChanged());

    // Another survey has come, or this one is locked.
    session_.ChangedOff();
    Show();
    QTest::keyClicks(Find<QLineEdit>("txtDLL"), u"x"_s);
    session_.ChangedOff();
    window_->close();
    EXPECT_FALSE(session_.IsChanged());
    Show();
    session_.Lock();
    EXPECT_TRUE(window_->isVisible()) << "level 0 allows all";
    session_.survey.LockLevel = 1;
    session_.Lock();
    EXPECT_FALSE(window_->isVisible() || session_.IsChanged());
    EXPECT_EQ(caller_.notes, QStringList());
}

}  // namespace
}  // namespace quibra
