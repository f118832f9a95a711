#include "apps/quibra/start_up.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "apps/quibra/frm_main.h"
#include "core/settings.h"
#include "session/survey_file.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

const QString kSample = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");

class Start : public testing::Test {
  protected:
    QTemporaryDir folder;
    ScriptedInterface user;
    ProgramFolders folders{.data = folder.filePath(u"data"_s),
                           .runtime = folder.path(),
                           .settings = folder.filePath(u"config/quibra.ini"_s)};
};

TEST_F(Start, NothingIsAskedTheFirstTime) {
    StartUp program(user, folders);
    ASSERT_TRUE(program.Run({}));
    EXPECT_TRUE(program.Main()->isVisible());
    EXPECT_TRUE(program.Session().IsDead());
    EXPECT_EQ(user.transcript, QStringList());
    EXPECT_TRUE(QFile::exists(folders.data)) << "work files need it";
}

TEST_F(Start, LastSurveyIsOfferedAndThePathOfTheCommandLineIsNot) {
    Settings settings = SettingsDefault();
    settings.QuotaFirst = 300;
    settings.RecentFiles[0] = kSample;
    SettingsWrite(settings, folders.settings);
    const QString question = u"message 36 クイブラダイレクトスタート: "_s + kSample + u"を読み込みますか -> "_s;
    {
        StartUp program(user, folders);
        ASSERT_TRUE(program.Run({}));
        EXPECT_EQ(user.TakeTranscript(), QStringList{question + u"No"_s});
        EXPECT_TRUE(program.Session().IsDead());
        EXPECT_EQ(program.Session().survey.QuotaFirst, 300);
    }
    {
        user.messageAnswers = {Answer::Yes};
        StartUp program(user, folders);
        ASSERT_TRUE(program.Run({}));
        EXPECT_EQ(user.TakeTranscript()[0], question + u"Yes"_s);
        EXPECT_EQ(program.Session().survey.FileName, kSample);
        EXPECT_EQ(program.Session().survey.QuotaFirst, 300);
    }
    StartUp program(user, folders);
    ASSERT_TRUE(program.Run(u"absent.qb\" and more"_s));
    EXPECT_EQ(user.transcript, QStringList{u"message 16 クイブラ: absent.qb\" and moreが見つかりません -> Ok"_s});
    EXPECT_TRUE(program.Main()->isVisible());
}

TEST_F(Start, WhatWasTypedAndNotSavedIsOfferedFirst) {
    const QString file = folder.filePath(u"調査.qb"_s);
    ASSERT_TRUE(QFile::copy(kSample, file));
    const QString journals = JournalFolder(folders.settings);
    const QString left = journals + u"left.journal"_s;
    {
        SurveySession session(user, folder.path());
        Journal journal(session, folder.filePath(u"other/"_s));
        QString path = file;
        SurveyLoad(session, path, kExpectSurvey);
        SampleChange(session.changes, ChangeCause::Typing).Delete(session.survey, user, 0);
        journal.Flush();
        QDir().mkpath(journals);
        const QDir other(folder.filePath(u"other"_s));
        ASSERT_TRUE(QFile::copy(other.filePath(other.entryList(QDir::Files).value(0)), left));
    }
    user.transcript.clear();
    for (const Answer answer : {Answer::Cancel, Answer::Yes, Answer::Yes}) {
        user.messageAnswers = {answer};
        StartUp program(user, folders);
        ASSERT_TRUE(program.Run({}));
        EXPECT_TRUE(user.TakeTranscript()[0].startsWith(u"message 35 クイブラ: 保存される前に終わってしまった入力"_s));
        EXPECT_EQ(program.Session().IsChanged(), answer == Answer::Yes);
        // Restored, it stands in the journal of this program, which is killed in its turn.
        EXPECT_EQ(QFile::exists(left), answer != Answer::Yes);
        if (answer != Answer::Yes) continue;
        EXPECT_EQ(program.Session().survey.SampleCount(), 1999);
        const QStringList names = QDir(journals).entryList(QDir::Files);
        ASSERT_EQ(names.size(), 1);
        ASSERT_TRUE(QFile::copy(journals + names[0], left));
        program.Session().DeclineChanges();
    }
    user.messageAnswers = {Answer::No};
    StartUp program(user, folders);
    ASSERT_TRUE(program.Run({}));
    EXPECT_TRUE(program.Session().IsDead());
    EXPECT_TRUE(QDir(journals).isEmpty());
}

TEST_F(Start, SecondCopyBeepsTellsAndEnds) {
    StartUp first(user, folders);
    ASSERT_TRUE(first.Run({}));
    StartUp second(user, folders);
    EXPECT_FALSE(second.Run(kSample));
    EXPECT_EQ(second.Main(), nullptr);
    EXPECT_EQ(user.transcript,
              (QStringList{u"beep"_s, u"message 48 クイブラ: 既に起動しているクイブラがあります -> Ok"_s}));
}

TEST_F(Start, CommandLineIsOnePath) {
    const auto path = [](const QStringList& words) { return PathOfCommandLine(QStringList{u"quibra"_s} + words); };
    EXPECT_EQ(path({}), QString());
    EXPECT_EQ(path({u"\"my survey.qb\""_s}), u"my survey.qb"_s);
    EXPECT_EQ(path({u"my"_s, u"survey.qb"_s}), u"my survey.qb"_s);
    EXPECT_EQ(path({u"\"a.qb\" b"_s}), u"a.qb\" b"_s);
    EXPECT_EQ(path({u"\""_s}), QString());
    const QString beside = QDir::current().relativeFilePath(kSample);
    EXPECT_EQ(path({beside}), kSample) << "the name of a survey holds in any folder";
}

}  // namespace
}  // namespace quibra
