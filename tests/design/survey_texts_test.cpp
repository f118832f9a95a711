// The questionnaire as text, the properties of a survey, and the steps that make a new one.
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "companion/limit_terms.h"
#include "core/code_page.h"
#include "design/new_survey_steps.h"
#include "design/question_listing.h"
#include "design/survey_properties.h"
#include "session/survey_file.h"
#include "support/error_of.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

Survey Fruit() {
    SurveyBuilder builder;
    builder.Question(u"果物"_s, u"何が好き,"_s, 2, {u"りんご"_s, u"みかん"_s, u"他"_s});
    builder.Question(QString(), u"産地"_s, 1, {u"国内"_s});
    builder.Status(0, 3, {kEssay, kOther});
    builder.QuestionLimit(1, {SurveyBuilder::Line(kLimitAnd, 0, 2, 1), SurveyBuilder::Line(kLimitOr, 0, 3)});
    Survey survey = builder.Get();
    survey.FileName = u"/home/人/果物.qb"_s;
    survey.Title = u"果物の調査"_s;
    survey.Editor = u"編集者"_s;
    return survey;
}

TEST(QuestionListing, TellsQuestionsToPeopleAndToPrograms) {
    QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session(user, folder.path());
    session.survey = Fruit();
    const QString path = folder.filePath(u"out.txt"_s);

    user.questionAnswers = {0, 1};
    user.fileAnswers = {path};
    OutputListing(session);
    EXPECT_EQ(user.TakeTranscript(),
              (QStringList{u"question どの質問から？ from 0 of 2 -> 0"_s,
                           u"question 果物 何が好き,からどの質問までですか？ from 0 of 2 -> 1"_s,
                           u"file save  | 全てのファイル(*.*)|*.*| -> "_s + path, u"busy on"_s, u"busy off"_s,
                           u"beep"_s, u"message 0 クイブラ: 終了しました -> Ok"_s}));
    EXPECT_EQ(DecodeCodePage(FileBytes(path)),
              u"Q1 果物 "
              u"何が好き,［2つまで］\r\n(0)無回答［排他］\r\n(1)りんご\r\n(2)みかん\r\n(3)他［記述］［その他］\r\n\r\n"
              u"Q2 質問2 （1位に果物(2)みかん又は果物(3)他の人）\r産地\r\n(0)無回答［排他］\r\n(1)国内\r\n\r\n"_s);

    user.fileAnswers = {path, QString(), folder.filePath(u"none/out.txt"_s)};
    OutputQuestionText(session);
    EXPECT_EQ(FileBytes(path), EncodeCodePage(u"Velmor Quiabra Questionaire Text Data Since 96.7A\r\n"
                                              u"/home/人/果物.qb\r\n果物の調査\r\n編集者\r\n2\r\n"
                                              u"0,果物, 何が好き,,2,0,4,0,0,0,\r\n0,1,りんご,0\r\n0,2,みかん,0\r\n"
                                              u"0,3,他［記述］［その他］,9\r\n\r\n"
                                              u"1,質問2, \r産地,1,0,2,19,0,2,1,0,3,0,0,0,\r\n1,1,国内,0\r\n\r\n"_s));
    user.TakeTranscript();
    OutputQuestionText(session);
    EXPECT_EQ(user.TakeTranscript().size(), 1) << "no name, no more words";
    OutputQuestionText(session);
    EXPECT_EQ(user.TakeTranscript().last(), u"message 48 クイブラ: パスが見つかりません。 -> Ok"_s);
    OutputListing(session);
    EXPECT_EQ(user.TakeTranscript().size(), 1) << "cancelled at the first question";
}

TEST(SurveyProperties, TakesARangeOfIdsInAnyOrder) {
    ScriptedInterface user;
    Survey survey = Fruit();
    EXPECT_EQ(AboutOf(survey).quotaUsed, u"(未発行)"_s);
    EXPECT_TRUE(SetQuota(survey, user, u"500"_s, u"20 より"_s));
    EXPECT_EQ(AboutOf(survey).quotaFirst + u'-' + AboutOf(survey).quotaLast, u"20-500"_s);
    EXPECT_FALSE(SetQuota(survey, user, u"0"_s, u"4294967296"_s));
    EXPECT_EQ(user.TakeTranscript(),
              QStringList(u"message 48 クイブラ: 割り当ての範囲は 0 から 4294967295 までです。 -> Ok"_s));
    EXPECT_EQ(ErrorOf([&] { SetQuota(survey, user, u"7"_s, u"2147483648"_s); }), kErrorOverflow);
    EXPECT_EQ(survey.QuotaFirst, 20);
}

TEST(SurveyProperties, MeasuresWhatTypingCost) {
    ScriptedInterface user;
    SurveyBuilder builder;
    const QStringList many(20, u"選択肢"_s);
    for (int kind = 0; kind < 4; ++kind)
        builder.Question(u"問"_s, u"本文"_s, 3, many);
    builder.Status(0, 12, {kEssay});
    for (int kind = 0; kind < 4; ++kind)
        builder.Get().Questions[kind].LabelKind = static_cast<qint16>(kind);
    builder.Sample({{9, {12, u"長い文"_s}, {10}}, {9, 10}, {1, 20}, {20}});
    builder.Sample({});
    builder.Get().Samples.SetEssay(1, 0, u"残りの文"_s);  // behind no answer
    MeasureRun run(builder.Get(), user, [](const MeasureRun&) {});
    EXPECT_EQ(run.AnswerText() + run.EssayText(), u"0 / %0"_s);
    run.Run();
    const TypingFigures& figures = run.Figures();
    EXPECT_EQ((std::vector{figures.answers, figures.characters, figures.dotted, figures.letters, figures.kana}),
              (std::vector<qint64>{8, 3, 2, 1, 2}));
    EXPECT_EQ(run.AnswerText() + run.EssayText(), u"8 個3 文字"_s);

    user.messageAnswers = {Answer::Ok};
    MeasureRun stopped(builder.Get(), user, [](const MeasureRun&) {});
    stopped.Cancel();
    EXPECT_EQ(user.TakeTranscript(), QStringList(u"message 1 クイブラ: 計測を中断しますか？ -> Ok"_s));
    stopped.Run();
    EXPECT_EQ(stopped.AnswerText(), u"0 / %"_s);
}

// The windows of the steps, each a line in the transcript of the user.
class NotedWindows : public NewSurveyWindows {
  public:
    explicit NotedWindows(ScriptedInterface& user) : user_(user) {}
    void CloseOthers() override { user_.transcript += u"close others"_s; }
    void ShowAbout() override { user_.transcript += u"about"_s; }
    void ShowQuestions() override { user_.transcript += u"questions"_s; }
    void ShowLines() override { user_.transcript += u"lines"_s; }
    void ShowQuota() override { user_.transcript += u"quota"_s; }

  private:
    ScriptedInterface& user_;
};

TEST(NewSurveySteps, LeadFromTheOldSurveyToASavedNewOne) {
    struct Case {
        bool locked;
        bool usesBase;
        const char16_t* title;
        QStringList between;
    };
    const QStringList editors{u"about"_s, u"questions"_s, u"lines"_s, u"quota"_s};
    for (const Case& way : {Case{false, false, u"新規アンケート", editors}, Case{false, true, u"果物の調査", editors},
                            Case{true, true, u"新規アンケート", editors}}) {
        QTemporaryDir folder;
        ScriptedInterface user;
        SurveySession session(user, folder.path());
        session.survey = Fruit();
        session.survey.Samples.Allocate(3);
        session.Unlock();
        if (way.locked) session.DeadSurvey();
        NotedWindows windows(user);
        NewSurveySteps steps(session, windows);
        EXPECT_EQ(steps.BaseName(), way.locked ? u"元になるアンケートは隠蔽されています"_s : u"果物の調査"_s);
        const QString changed =
            u"message 35 クイブラ: アンケート「果物の調査」は変更されています。保存しますか？ -> No"_s;
        user.messageAnswers = {Answer::No};
        steps.Next();
        EXPECT_EQ(user.TakeTranscript(),
                  way.locked ? QStringList(u"close others"_s) : (QStringList{changed, u"close others"_s}));
        EXPECT_EQ(session.survey.SampleCount(), 0);
        EXPECT_EQ(session.survey.FileName, folder.filePath(u"new.qb"_s));
        steps.SetUsesBase(way.usesBase);
        if (!way.locked) steps.Next();
        EXPECT_EQ(session.survey.Title, QString::fromUtf16(way.title));
        ASSERT_EQ(steps.Current(), NewSurveySteps::kTitle);
        // Back over the choice where there is none.
        steps.Back();
        EXPECT_EQ(steps.Current(), way.locked ? NewSurveySteps::kIntroduction : NewSurveySteps::kBase);
        user.messageAnswers.clear();
        steps.Next();
        user.TakeTranscript();
        for (int i = 0; i < 4; ++i)
            steps.Next();
        EXPECT_EQ(user.TakeTranscript(), way.between);
        EXPECT_EQ(steps.CurrentPanel().title, u"アンケートの設定が終わりました"_s);
        steps.Next();
        EXPECT_FALSE(steps.IsClosed()) << "no name";
        const QString path = folder.filePath(u"saved.qb"_s);
        user.fileAnswers = {path};
        user.TakeTranscript();
        steps.Next();
        EXPECT_EQ(
            user.Lines(u"message"_s),
            (QStringList{
                u"message 0 クイブラ: 保存が終わりました。 -> Ok"_s,
                u"message 0 クイブラ: データのパスワードは現在設定されていません。変更するときは『その他』の中の『データにパスワードをつける』を選んでください。 -> Ok"_s}));
        EXPECT_TRUE(steps.IsClosed() && QFile::exists(path) && session.survey.FileName == path);
        EXPECT_EQ(session.survey.LockLevel, 0);
        EXPECT_TRUE(session.menu.mnuSetQuestion && session.menu.mnuStatis && !session.IsChanged());
    }
}

TEST(NewSurveySteps, LeaveTheOldSurveyAloneOnCancelAndAFailedSave) {
    QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session(user, folder.path());
    session.survey = Fruit();
    session.survey.FileName = folder.filePath(u"none/x.qb"_s);
    session.survey.Samples.Allocate(3);
    session.Unlock();
    NotedWindows windows(user);
    NewSurveySteps steps(session, windows);
    steps.Back();
    user.messageAnswers = {Answer::Yes};
    steps.Next();
    EXPECT_EQ(steps.Current(), NewSurveySteps::kIntroduction);
    EXPECT_FALSE(steps.IsClosed());
    steps.Cancel();
    EXPECT_EQ(user.TakeTranscript().last(), u"message 260 クイブラ: 本当にアンケートの設定を中止しますか -> No"_s);
    EXPECT_FALSE(steps.IsClosed());
    user.messageAnswers = {Answer::Cancel};
    steps.Next();
    EXPECT_TRUE(steps.IsClosed());
    EXPECT_EQ(session.survey.SampleCount(), 3);
}

}  // namespace
}  // namespace quibra
