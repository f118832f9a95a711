// Saving: what is said, where the versions lie, and that no fault of the disk and no end of the process loses both.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>
#include <csignal>

#include "core/settings.h"
#include "core/whole_file.h"
#include "session/survey_file.h"
#include "support/file_faults.h"
#include "support/scripted_interface.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

class SurveySaving : public testing::Test {
  protected:
    ScriptedInterface user;
    SurveySession session{user, u"/nowhere"_s};
    QTemporaryDir folder{QDir::tempPath() + u"/save-XXXXXX"_s};  // no dot, for the backup's sake
    const QString path = folder.filePath(u"a.qb"_s);
    const QString backup = folder.filePath(u"a.qb~"_s);
    const QByteArray old = TestData(u"small-1003.qb"_s);
    QByteArray newBytes;

    // A survey large enough that it is written in several pieces.
    void SetUp() override {
        ASSERT_TRUE(ReadSurveyBytes(TestData(u"gss.qb"_s), session.survey));
        Survey& survey = session.survey;
        const SampleList source = survey.Samples;
        const qint32 count = source.Count();
        constexpr int kCopies = 6;
        survey.Samples.Allocate(kCopies * count);
        for (qint32 dno = 0; dno < kCopies * count; ++dno) {
            survey.Samples.SetIDno(dno, dno);
            std::copy_n(source.Packed(dno % count), source.SampleBytes(), survey.Samples.Packed(dno));
        }
        newBytes = WriteSurveyBytes(survey);
        ASSERT_GT(newBytes.size(), 1 << 20);
        session.ChangedOn();
    }

    bool Save(const QString& to, const std::vector<qint32>* places = nullptr) {
        user.transcript.clear();
        const bool saved = SurveySave(session, to, places);
        EXPECT_EQ(user.OpenProgressWindows(), 0);
        EXPECT_FALSE(user.IsBusy());
        EXPECT_EQ(user.transcript.last(3), (QStringList{u"progress close"_s, u"beep"_s, u"busy off"_s}));
        return saved;
    }
    QStringList Names() const { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); }
    // The only file; none for empty bytes.
    void Put(const QString& at, const QByteArray& bytes) {
        for (const QString& name : Names())
            QFile::remove(folder.filePath(name));
        if (!bytes.isEmpty()) WriteFileBytes(at, bytes);
    }
    void PutBoth() {
        Put(path, old);
        WriteFileBytes(backup, "older");
    }
};

const QString kFailed = u"\\r\\n正しく保存出来ませんでした。 -> Ok"_s;
const QString kCancelled = u"message 0 クイブラ: 保存がｷｬﾝｾﾙされました。 -> Ok"_s;

}  // namespace

TEST_F(SurveySaving, OldVersionBecomesTheBackupAndTheSurveyCountsAsSaved) {
    PutBoth();
    session.survey.SavedSampleCount = -1;
    ASSERT_TRUE(Save(path));
    EXPECT_EQ(Names(), (QStringList{u"a.qb"_s, u"a.qb~"_s}));
    EXPECT_TRUE(FileBytes(path) == newBytes);
    EXPECT_TRUE(FileBytes(backup) == old);
    EXPECT_FALSE(session.IsChanged());
    EXPECT_EQ(session.survey.SavedSampleCount, session.survey.SampleCount());
    EXPECT_TRUE(session.survey.SavedTime.isValid());
    EXPECT_EQ(session.settings.RecentFiles[0], path);

    EXPECT_EQ(user.transcript.first(2),
              (QStringList{u"busy on"_s, u"progress open 保存中 | "_s + path + u" | 質問など"_s}));
    const int questions = session.survey.QuestionCount;
    QStringList expected;
    for (int q = 1; q <= questions; ++q)
        expected += u"progress 質問など %1/%2 0"_s.arg(q).arg(questions);
    const qint32 count = session.survey.SampleCount();
    const qint32 interval = count / 50 + 1;
    for (qint32 step = interval; step < count; step += interval)
        expected += u"progress 回答 %1/%2 %3"_s.arg(step).arg(count).arg(static_cast<double>(step) / count);
    expected += u"progress 回答 %1/%1 1"_s.arg(count);
    EXPECT_EQ(user.transcript.mid(2, expected.size()), expected);
    EXPECT_EQ(user.transcript.size(), 2 + expected.size() + 3);
}

TEST_F(SurveySaving, SelectionWritesItsSamplesOnly) {
    Survey read;
    const std::vector<qint32> some({70000 % session.survey.SampleCount(), 3, 5});
    ASSERT_TRUE(Save(path, &some));
    ASSERT_TRUE(ReadSurveyBytes(FileBytes(path), read));
    ASSERT_EQ(read.SampleCount(), 3);
    EXPECT_EQ(read.Samples.IDno(1), 3);
    EXPECT_EQ(read.Samples.IDno(2), 5);
    const std::vector<qint32> none;
    ASSERT_TRUE(Save(path, &none));
    ASSERT_TRUE(ReadSurveyBytes(FileBytes(path), read));
    EXPECT_EQ(read.SampleCount(), 0);
    EXPECT_EQ(read.QuestionCount, session.survey.QuestionCount);
    const std::vector<qint32> stray({session.survey.SampleCount()});
    const QByteArray before = FileBytes(path);
    EXPECT_FALSE(Save(path, &stray));
    EXPECT_TRUE(FileBytes(path) == before);
}

TEST_F(SurveySaving, StopLeavesTheOldVersion) {
    PutBoth();
    const int reports = session.survey.QuestionCount + 50;
    for (const int step : {1, 2, session.survey.QuestionCount + 1, reports}) {
        user.stopAtProgress = step;
        user.messageAnswers = {Answer::Ok};
        EXPECT_FALSE(Save(path)) << step;
        EXPECT_EQ(
            user.Lines(u"message"_s),
            (QStringList{
                u"message 305 クイブラ: 中止すると保存先のファイルが中途半端で読み込めなくなります。 -> Ok"_s,
                u"message 0 クイブラ: 保存先のファイルが読み込めなくなりました。クイブラ終了前に必ず改めて保存し直してください。 -> Ok"_s,
                kCancelled}));
        EXPECT_TRUE(FileBytes(path) == old);
        EXPECT_EQ(Names(), (QStringList{u"a.qb"_s, u"a.qb~"_s}));
        EXPECT_TRUE(session.IsChanged());
        EXPECT_TRUE(session.settings.RecentFiles[0].isEmpty());
    }

    // There is nothing to go back to in a first save, and that is told like an error.
    Put(path, {});
    user.stopAtProgress = 3;
    user.messageAnswers = {Answer::Ok};
    EXPECT_FALSE(Save(path));
    EXPECT_EQ(user.Lines(u"message"_s).mid(2),
              (QStringList{kCancelled, u"message 48 クイブラ: ファイルが見つかりません。"_s + kFailed}));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(SurveySaving, TextTooLongForTheFileIsToldBeforeAnythingMoves) {
    Put(path, old);
    session.survey.Title = QString(40000, u'x');
    EXPECT_FALSE(Save(path));
    EXPECT_EQ(user.Lines(u"message"_s), QStringList{u"message 48 クイブラ: オーバーフローしました。"_s + kFailed});
    EXPECT_TRUE(FileBytes(path) == old);
    EXPECT_EQ(Names(), QStringList{u"a.qb"_s});
    Put(path, {});
    EXPECT_THROW(SurveySave(session, path), RuntimeError);
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(SurveySaving, NewVersionIsOnTheDiskBeforeTheOldOneMoves) {
    Put(path, old);
    ArmFileFault(FaultKind::Error, 1000, EIO);  // none fails, all are noted
    ASSERT_TRUE(Save(path));
    DisarmFileFault();
    // The lock of the old version; the new one, locked and made like it, in two pieces; a leftover of an earlier crash
    // goes, the old version gets a second name, the new one the survey's, and the old one the backup's.
    EXPECT_EQ(FileCalls(),
              "open flock open flock fchown fchmod write write fsync close "
              "unlink link rename open fsync close rename close close ");
}

// With an old version it stays, and the backup of before; in a first save no file is left, and once there was one, the
// end is error 53. What only guards the file (locks, owner, second names) does without.
using SlowSurveySaving = SurveySaving;

TEST_F(SlowSurveySaving, FailingDiskLeavesWhatWasThereBefore) {
    for (const bool links : {true, false})
        for (const bool replaces : {true, false}) {
            RefuseLinks(!links);
            int faults = 0, thrown = 0;
            for (int call = 1;; ++call) {
                replaces ? PutBoth() : Put(path, {});
                session.ChangedOn();
                session.RememberFile(path);
                ArmFileFault(FaultKind::Error, call, ENOSPC);
                bool saved = false;
                try {
                    saved = Save(path);
                } catch (const RuntimeError& error) {
                    ++thrown;
                    EXPECT_EQ(error.Number(), kErrorFileNotFound);
                }
                DisarmFileFault();
                if (saved) {
                    EXPECT_TRUE(FileBytes(path) == newBytes) << call;
                    EXPECT_EQ(Names(), replaces ? QStringList({u"a.qb"_s, u"a.qb~"_s}) : QStringList(u"a.qb"_s))
                        << call;
                    if (!FileFaultStruck()) break;
                    continue;
                }
                ++faults;
                EXPECT_EQ(user.Lines(u"message"_s),
                          QStringList{u"message 48 クイブラ: ディスクの空き容量が不足しています。"_s + kFailed})
                    << call;
                EXPECT_EQ(Names(), replaces ? QStringList({u"a.qb"_s, u"a.qb~"_s}) : QStringList()) << call;
                EXPECT_TRUE(!replaces || (FileBytes(path) == old && FileBytes(backup) == "older")) << call;
                EXPECT_TRUE(session.IsChanged());
            }
            EXPECT_GE(faults, replaces ? 9 : 5);
            EXPECT_EQ(thrown > 3, !replaces);
        }
    RefuseLinks(false);
}

TEST_F(SlowSurveySaving, WhereverTheProcessOrTheDiskEndsTheSurveyStandsUnderItsName) {
    const auto isWhole = [&](const QString& at) {
        if (!QFile::exists(at)) return false;
        const QByteArray bytes = FileBytes(at);
        return bytes == old || bytes == newBytes;
    };
    for (const bool links : {true, false})
        for (const QString& target : {path, backup})
            for (const FaultKind kind : {FaultKind::Kill, FaultKind::DeadDisk}) {
                RefuseLinks(!links);
                int call = 0;
                int status = kKilledStatus << 8;
                while (WIFEXITED(status) && WEXITSTATUS(status) == kKilledStatus) {
                    Put(target, old);
                    ++call;
                    const pid_t child = fork();
                    ASSERT_GE(child, 0);
                    if (child == 0) {
                        ArmFileFault(kind, call, EIO);
                        try {
                            SurveySave(session, target);
                        } catch (const RuntimeError&) {
                        }
                        _exit(FileFaultStruck() ? kKilledStatus : 0);
                    }
                    ASSERT_EQ(waitpid(child, &status, 0), child);
                    if (isWhole(target)) continue;
                    // Without second names there is a moment without the first one. What is left is offered.
                    EXPECT_FALSE(links) << qPrintable(target) << " at call " << call;
                    user.messageAnswers = {Answer::Yes};
                    QString toLoad = target;
                    EXPECT_EQ(SurveyLoad(session, toLoad, kExpectSurvey), kLoaded) << call;
                    EXPECT_EQ(session.survey.FileName, target);
                    SetUp();
                }
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
                EXPECT_TRUE(FileBytes(target) == newBytes);
                EXPECT_GT(call, 12);
            }
    RefuseLinks(false);
    // What the killed ones have left goes with the next save.
    Put(path, old);
    for (const QString& suffix : {u"~new"_s, u"~old"_s})
        WriteFileBytes(path + suffix, "left");
    EXPECT_TRUE(Save(path));
    EXPECT_EQ(Names(), (QStringList{u"a.qb"_s, u"a.qb~"_s}));
}

TEST_F(SurveySaving, InterruptLeavesNoTemporaryFile) {
    for (int call = 5; call < 15; ++call) {
        Put(path, old);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            std::signal(SIGINT, [](int) {
                RemoveGrowingFiles();
                _exit(kKilledStatus);
            });
            ArmFileFault(FaultKind::Interrupt, call, EINTR);
            SurveySave(session, path);
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(FileBytes(path) == old || FileBytes(path) == newBytes) << call;
        EXPECT_FALSE(Names().contains(u"a.qb~new"_s)) << call;
    }
}

TEST_F(SurveySaving, AnotherProgramsVersionIsReplacedOnlyWhenTheUserSaysSo) {
    Put(path, old);
    QString toLoad = path;
    ASSERT_EQ(SurveyLoad(session, toLoad, kExpectSurvey), kLoaded);
    WriteFileBytes(path, TestData(u"gss.qb"_s));
    const QByteArray other = FileBytes(path);
    EXPECT_FALSE(Save(path));
    const QString asked =
        u"\\r\\nは、読み込みまたは保存の後に他のプログラムが書き換えています。\\r\\n上書きすると、その変更は失われます（拡張子 qb~ に残ります）。上書きしますか？ -> "_s;
    EXPECT_EQ(user.Lines(u"message"_s),
              QStringList{u"message 308 クイブラ: このファイル\\r\\n"_s + path + asked + u"No"_s});
    EXPECT_TRUE(FileBytes(path) == other);
    user.messageAnswers = {Answer::Yes};
    EXPECT_TRUE(Save(path));
    EXPECT_TRUE(FileBytes(backup) == other);
    EXPECT_TRUE(Save(path));
    EXPECT_EQ(user.Lines(u"message"_s), QStringList());

    Put(path, {});
    EXPECT_TRUE(Save(path));
    EXPECT_EQ(user.Lines(u"message"_s),
              QStringList{u"message 64 クイブラ: このファイル\\r\\n"_s + path +
                          u"\\r\\nはなくなっています。新しいファイルとして保存します。 -> Ok"_s});
    EXPECT_EQ(Names(), QStringList{u"a.qb"_s});
}

TEST_F(SlowSurveySaving, FileThatAnotherProgramWritesIsLeftToIt) {
    Put(path, old);
    const FileLock others(path, [] {});
    EXPECT_FALSE(Save(path));
    EXPECT_EQ(
        user.Lines(u"message"_s),
        QStringList{
            u"message 48 クイブラ: 他のプログラムがこのファイルに書き込んでいます。しばらくしてからやり直してください。"_s +
            kFailed});
    EXPECT_TRUE(FileBytes(path) == old);
}

TEST_F(SurveySaving, PermissionsAndGroupStayAndAWriteProtectedFileIsNotReplaced) {
    constexpr gid_t kGroup = 12345;
    Put(path, old);
    const QByteArray name = QFile::encodeName(path);
    const bool maySetGroup = chown(name.constData(), static_cast<uid_t>(-1), kGroup) == 0;
    ASSERT_EQ(chmod(name.constData(), 0640), 0);
    ASSERT_TRUE(Save(path));
    struct stat status;
    ASSERT_EQ(stat(name.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640);
    EXPECT_TRUE(!maySetGroup || status.st_gid == kGroup);

    Put(path, old);
    ASSERT_EQ(chmod(name.constData(), 0444), 0);
    session.RememberFile(path);
    EXPECT_FALSE(Save(path));
    EXPECT_EQ(user.Lines(u"message"_s), QStringList{u"message 48 クイブラ: 書き込みできません。"_s + kFailed});
    EXPECT_TRUE(FileBytes(path) == old);
    EXPECT_EQ(Names(), QStringList{u"a.qb"_s});
}

TEST_F(SurveySaving, BackupOnAnotherFileSystemIsCopied) {
    Put(path, old);
    ArmRenameFault(2, EXDEV);
    EXPECT_TRUE(Save(path));
    DisarmFileFault();
    EXPECT_TRUE(FileFaultStruck());
    EXPECT_TRUE(FileBytes(path) == newBytes);
    EXPECT_TRUE(FileBytes(backup) == old);
    EXPECT_EQ(Names(), (QStringList{u"a.qb"_s, u"a.qb~"_s}));
}

}  // namespace quibra
