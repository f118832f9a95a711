// Opening, saving and leaving a survey, and the settings asked for in a box: every word of these conversations.
#include "session/main_commands.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "core/binary_file.h"
#include "core/settings.h"
#include "core/survey_writer.h"
#include "session/survey_file.h"
#include "support/file_faults.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

const QString kChangedQuestion = u"message 35 クイブラ: アンケート「%1」は変更されています。保存しますか？ -> %2"_s;
const QString kRefusedSave =
    u"message 0 クイブラ: 保存は禁止されています。アンケートを読み込んでいないか、データが壊れています -> Ok"_s;
const QString kOpenFilter = u"全てのクイブラﾌｧｲﾙ(*.qb*)|*.qb*|全てのファイル(*.*)|*.*|"_s;
const QString kSaveFilter = u"クイブラデータ(*.qb)|*.qb|全てのファイル(*.*)|*.*|"_s;

class MainCommands : public testing::Test {
  protected:
    QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session{user, folder.path()};

    QString Path(const QString& name) { return folder.filePath(name); }
    // A survey file of two samples.
    QString PutSurvey(const QString& name, const QString& title) {
        SurveyBuilder builder;
        builder.Question(u"Q"_s, u"body"_s, 1, {u"a"_s, u"b"_s});
        builder.Sample({{1}});
        builder.Sample({{2}});
        builder.Get().Title = title;
        WriteFileBytes(Path(name), WriteSurveyBytes(builder.Get()));
        return Path(name);
    }
    QString PutPage(const QString& name, const QString& base) {
        QByteArray bytes;
        ByteWriter out(bytes);
        WriteMagic(out, kPageFile);
        WriteDoubleLen(out, base);
        out.Flush();
        WriteFileBytes(Path(name), bytes);
        return Path(name);
    }
    void OpenChanged(const QString& path) {
        ASSERT_TRUE(SurveyOpen(session, path, kExpectSurvey).replaced);
        session.survey.Editor = u"someone else"_s;
        session.ChangedOn();
        user.TakeTranscript();
    }
};

TEST_F(MainCommands, ChangedQuestionStandsBeforeOpeningAndObeysItsAnswer) {
    const QString first = PutSurvey(u"first.qb"_s, u"最初"_s);
    const QString second = PutSurvey(u"second.qb"_s, u"次"_s);

    OpenChanged(first);
    user.messageAnswers = {Answer::Cancel};
    EXPECT_FALSE(SurveyOpen(session, second, kExpectSurvey).replaced);
    EXPECT_EQ(user.TakeTranscript(), QStringList{kChangedQuestion.arg(u"最初"_s, u"Cancel"_s)});
    EXPECT_EQ(session.survey.FileName, first);
    EXPECT_TRUE(session.IsChanged());

    user.messageAnswers = {Answer::Yes};
    const QByteArray before = FileBytes(first);
    EXPECT_TRUE(SurveyOpen(session, second, kExpectSurvey).replaced);
    EXPECT_NE(FileBytes(first), before) << "Yes saves";
    EXPECT_EQ(FileBytes(Path(u"first.qb~"_s)), before);
    EXPECT_EQ(session.survey.FileName, second);

    OpenChanged(second);
    user.messageAnswers = {Answer::No};
    const QByteArray unsaved = FileBytes(second);
    EXPECT_TRUE(SurveyOpen(session, first, kExpectSurvey).replaced);
    EXPECT_EQ(FileBytes(second), unsaved);
    EXPECT_EQ(session.survey.Editor, u"someone else"_s) << "the version that Yes saved";
}

TEST_F(MainCommands, SaveThatFailsKeepsWhatItCouldNotSave) {
    OpenChanged(PutSurvey(u"a.qb"_s, u"題"_s));
    session.survey.FileName = Path(u"nowhere/a.qb"_s);
    user.messageAnswers = {Answer::Yes, Answer::Ok};
    EXPECT_FALSE(SurveyOpen(session, PutSurvey(u"b.qb"_s, u"次"_s), kExpectSurvey).replaced);
    EXPECT_EQ(user.Lines(u"message"_s),
              (QStringList{kChangedQuestion.arg(u"題"_s, u"Yes"_s),
                           u"message 48 クイブラ: パスが見つかりません。\\r\\n正しく保存出来ませんでした。 -> Ok"_s}));
    EXPECT_TRUE(session.IsChanged());
    EXPECT_EQ(session.survey.Title, u"題"_s);
}

TEST_F(MainCommands, FirstSaveThatBreaksOffLosesNothing) {
    OpenChanged(PutSurvey(u"a.qb"_s, u"題"_s));
    user.fileAnswers = {Path(u"new.qb"_s)};
    ArmFileFault(FaultKind::Error, 4, ENOSPC);  // its first write
    SaveSurveyAs(session);
    DisarmFileFault();
    EXPECT_EQ(user.Lines(u"message"_s), (QStringList{u"message 48 クイブラ: ディスクの空き容量が不足しています。\\r\\n"
                                                     u"正しく保存出来ませんでした。 -> Ok"_s,
                                                     u"message 48 クイブラ: ファイルが見つかりません。 -> Ok"_s}));
    EXPECT_TRUE(session.IsChanged());
    EXPECT_EQ(session.survey.FileName, Path(u"a.qb"_s));
    EXPECT_FALSE(QFile::exists(Path(u"new.qb"_s)));
}

TEST_F(MainCommands, AFileThatMayNotBeReadIsToldToBeThat) {
    const QString path = PutSurvey(u"a.qb"_s, u"題"_s);
    ArmFileFault(FaultKind::Error, 1, EACCES);
    SurveyOpen(session, path, kExpectSurvey);
    DisarmFileFault();
    const QStringList told = user.Lines(u"message"_s);
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].startsWith(u"message 48 クイブラ: 読み取りが許可されていません。\\r\\n"_s + path))
        << qPrintable(told[0]);
    EXPECT_TRUE(session.IsDead());
}

TEST_F(MainCommands, StopInTheMiddleOfALoadLeavesTheDeadState) {
    const QString path = PutSurvey(u"a.qb"_s, u"題"_s);
    user.stopAtProgress = 2;
    user.messageAnswers = {Answer::Ok};
    const OpenOutcome outcome = SurveyOpen(session, path, kExpectSurvey);
    EXPECT_TRUE(outcome.replaced) << "windows on the old survey must close";
    EXPECT_TRUE(session.IsDead());
    EXPECT_FALSE(session.menu.mnuStatis || session.menu.mnuFileSaveAs || session.menu.mnuInput);
    EXPECT_EQ(
        user.Lines(u"message"_s),
        QStringList{
            u"message 305 クイブラ: 中止するとクイブラ内部のアンケートデータが壊れて保存出来なくなります。 -> Ok"_s});
    EXPECT_EQ(StatusOf(session).title, u"アンケートは読み込まれていません"_s);
    // Even unlocked it can't be saved.
    session.Unlock();
    user.TakeTranscript();
    EXPECT_FALSE(SaveSurvey(session));
    SaveSurveyAs(session);
    EXPECT_EQ(user.TakeTranscript(), (QStringList{kRefusedSave, kRefusedSave}));
}

TEST_F(MainCommands, FilesThatAreNoSurveyLeaveTheOneThatIsOpen) {
    const QString path = PutSurvey(u"a.qb"_s, u"題"_s);
    ASSERT_TRUE(SurveyOpen(session, path, kExpectSurvey).replaced);
    const QString wrong = Path(u"letter.txt"_s);
    WriteFileBytes(wrong, QByteArrayLiteral("Dear Sir or Madam"));
    user.TakeTranscript();
    EXPECT_FALSE(SurveyOpen(session, wrong, kExpectSurvey).replaced);
    EXPECT_FALSE(SurveyOpen(session, Path(u"absent.qb"_s), kExpectSurvey).replaced);
    EXPECT_FALSE(SurveyOpen(session, path, kExpectPage).replaced);
    EXPECT_EQ(
        user.TakeTranscript(),
        (QStringList{u"message 48 クイブラ: このファイル\\r\\n"_s + wrong + u"\\r\\nはクイブラで扱えません。 -> Ok"_s,
                     u"message 16 クイブラ: "_s + Path(u"absent.qb"_s) + u"が見つかりません -> Ok"_s,
                     u"message 0 クイブラ: このファイル\\r\\n"_s + path +
                         u"\\r\\nはアンケートファイルデータです。ここでは読み込めません。 -> Ok"_s}));
    EXPECT_EQ(session.survey.FileName, path);
}

TEST_F(MainCommands, ResultPageBringsItsSurvey) {
    const QString base = PutSurvey(u"base.qb"_s, u"基"_s);
    const QString page = PutPage(u"page.qbp"_s, base);
    user.messageAnswers = {Answer::Ok};
    OpenOutcome outcome = SurveyOpen(session, page, kExpectPage);
    EXPECT_TRUE(outcome.replaced);
    EXPECT_EQ(outcome.page, page);
    EXPECT_EQ(session.survey.FileName, base);

    outcome = SurveyOpen(session, page, kExpectPage);
    EXPECT_FALSE(outcome.replaced) << "its survey is the one that is open";
    EXPECT_EQ(outcome.page, page);

    user.messageAnswers = {Answer::Cancel};
    outcome = SurveyOpen(session, PutPage(u"other.qbp"_s, Path(u"absent.qb"_s)), kExpectSurvey);
    EXPECT_FALSE(outcome.replaced);
    EXPECT_EQ(outcome.page, QString());
    user.messageAnswers = {Answer::Yes};
    outcome = SurveyOpen(session, Path(u"other.qbp"_s), kExpectSurvey);
    EXPECT_EQ(outcome.page, QString()) << "without its survey there is no page";
    EXPECT_EQ(user.transcript.last(), u"message 16 クイブラ: "_s + Path(u"absent.qb"_s) + u"が見つかりません -> Ok"_s);
}

TEST_F(MainCommands, DialogsForFilesStartWhereTheSurveyIs) {
    const QString path = PutSurvey(u"a.qb"_s, u"題"_s);
    user.fileAnswers = {path, QString(), Path(u"copy.qb"_s), QString()};
    EXPECT_TRUE(AskAndOpen(session, kExpectSurvey).replaced);
    EXPECT_FALSE(AskAndOpen(session, kExpectPage).replaced);
    SaveSurveyAs(session);
    EXPECT_EQ(session.survey.FileName, Path(u"copy.qb"_s));
    EXPECT_EQ(FileBytes(Path(u"copy.qb"_s)), FileBytes(path));
    SaveSurveyAs(session);
    EXPECT_EQ(session.survey.FileName, Path(u"copy.qb"_s));
    EXPECT_EQ(user.Lines(u"file"_s),
              (QStringList{u"file open  | "_s + kOpenFilter + u" -> "_s + path,
                           u"file open "_s + folder.path() + u"/ | 集計結果(*.qbp)|*.qbp| -> cancel"_s,
                           u"file save "_s + path + u" | "_s + kSaveFilter + u" -> "_s + Path(u"copy.qb"_s),
                           u"file save "_s + Path(u"copy.qb"_s) + u" | "_s + kSaveFilter + u" -> cancel"_s}));
    user.TakeTranscript();
    EXPECT_FALSE(SaveSurvey(session)) << "nothing has changed";
    EXPECT_EQ(user.TakeTranscript(), QStringList{kRefusedSave});
}

TEST_F(MainCommands, SaveIntervalIsAskedUntilItIsOne) {
    const QString ask = u"input 保存の間隔 | 保存する時間の間隔を入力してください | 間隔 | 単位：分 | %1 -> %2"_s;
    session.settings.SaveInterval = 45.0 / 1440;
    user.inputAnswers = {u"1440"_s, u"1e999"_s, u"0.9"_s, u" 1439分"_s};
    EditSaveInterval(session);
    EXPECT_EQ(
        user.TakeTranscript(),
        (QStringList{ask.arg(u"45"_s, u"1440"_s), u"message 16 クイブラ: 24時間(1440分)以上は設定できません -> Ok"_s,
                     ask.arg(u"45"_s, u"1e999"_s), u"message 48 クイブラ: オーバーフローしました。 -> Ok"_s,
                     ask.arg(u"1e999"_s, u"0.9"_s), u"message 16 クイブラ: 1分以上の時間を指定してください -> Ok"_s,
                     ask.arg(u"30"_s, u" 1439分"_s)}));
    EXPECT_DOUBLE_EQ(session.settings.SaveInterval, 1439.0 / 1440);
    user.inputAnswers = {std::nullopt};
    EditSaveInterval(session);
    EXPECT_DOUBLE_EQ(session.settings.SaveInterval, 1439.0 / 1440);
}

TEST_F(MainCommands, ResetOfTheSettingsAsksAndTouchesTheQuota) {
    session.settings.WinPos[kPosMain].Width = 100;
    session.survey.QuotaFirst = 500;
    ResetSettings(session);
    EXPECT_EQ(session.survey.QuotaFirst, 500);
    user.messageAnswers = {Answer::Ok};
    ResetSettings(session);
    EXPECT_EQ(session.survey.QuotaFirst, 0);
    EXPECT_EQ(session.survey.QuotaLast, 100000);
    EXPECT_EQ(session.settings.WinPos[kPosMain].Width, 0);
    const QString ask = u"message 1 クイブラ: 各ウィンドウのサイズとフォントなどを初期化します。 -> "_s;
    EXPECT_EQ(user.transcript, (QStringList{ask + u"Cancel"_s, ask + u"Ok"_s}));
}

TEST_F(MainCommands, LastWordsNameTheFileThatHoldsTheWork) {
    OpenChanged(PutSurvey(u"a.qb"_s, u"題"_s));
    TellTheEnd(session, u"オーバーフローしました。"_s);
    const QStringList rescued = QDir(folder.path()).entryList({u"a.rescue-*.qb"_s});
    ASSERT_EQ(rescued.size(), 1);
    EXPECT_EQ(user.TakeTranscript(),
              QStringList{u"message 16 クイブラ: オーバーフローしました。\\r\\nクイブラを終了します。\\r\\n"_s
                          u"変更したアンケートを次のファイルに書き出しました。\\r\\n"_s +
                          Path(rescued[0]) + u" -> Ok"_s});
    ASSERT_FALSE(SurveyOpen(session, Path(rescued[0]), kExpectSurvey).replaced) << "still changed";
    session.ChangedOff();
    EXPECT_TRUE(SurveyOpen(session, Path(rescued[0]), kExpectSurvey).replaced);
    EXPECT_EQ(session.survey.Editor, u"someone else"_s);
    user.TakeTranscript();
    TellTheEnd(session, u"x"_s);
    EXPECT_EQ(user.TakeTranscript(), QStringList{u"message 16 クイブラ: x\\r\\nクイブラを終了します。 -> Ok"_s});
}

}  // namespace
}  // namespace quibra
