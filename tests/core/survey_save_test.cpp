// Saving: what is said, where the versions lie, and that no fault of the disk and no end of the process loses both.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "core/survey_file.h"
#include "support/file_faults.h"
#include "support/scripted_interface.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Places of samples as a search result gives them.
class Places : public SampleSelection {
  public:
    explicit Places(std::vector<qint32> places) : places_(std::move(places)) {}
    // A list without rows counts as one of one row.
    qint32 EssayDnoCount() const override { return std::max<qint32>(1, static_cast<qint32>(places_.size())); }
    void EssayDnoReset() override { next_ = 0; }
    qint32 EssayDno() override { return next_ < places_.size() ? places_[next_++] : -1; }

  private:
    std::vector<qint32> places_;
    size_t next_ = 99;
};

class SurveySaving : public testing::Test {
  protected:
    ScriptedInterface user;
    SurveySession session{user, u"/nowhere"_s};
    QTemporaryDir folder{QDir::tempPath() + u"/save-XXXXXX"_s};  // no dot, for the backup's sake
    const QString path = folder.filePath(u"a.qb"_s);
    const QString backup = folder.filePath(u"a.qb~"_s);
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

    bool Save(const QString& to, SampleSelection* selection = nullptr) {
        user.transcript.clear();
        const bool saved = SurveySave(session, to, selection);
        EXPECT_EQ(user.OpenProgressWindows(), 0);
        EXPECT_FALSE(user.IsBusy());
        EXPECT_EQ(user.transcript.last(3), (QStringList{u"progress close"_s, u"beep"_s, u"busy off"_s}));
        return saved;
    }
    QStringList Names() const { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); }
    // Old version, or none for an empty one, and an older backup.
    void Put(const QString& at, const QByteArray& bytes) {
        for (const QString& name : Names())
            QFile::remove(folder.filePath(name));
        if (!bytes.isEmpty()) WriteFileBytes(at, bytes);
    }
};

const QString kFailed = u"\\r\\n正しく保存出来ませんでした。 -> Ok"_s;
const QString kCancelled = u"message 0 クイブラ: 保存がｷｬﾝｾﾙされました。 -> Ok"_s;

}  // namespace

TEST_F(SurveySaving, OldVersionBecomesTheBackupAndTheSurveyCountsAsSaved) {
    const QByteArray old = TestData(u"small-1001.qb"_s);
    Put(path, old);
    WriteFileBytes(backup, "older");
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0640), 0);
    session.survey.SavedSampleCount = -1;
    ASSERT_TRUE(Save(path));
    EXPECT_EQ(Names(), (QStringList{u"a.qb"_s, u"a.qb~"_s}));
    EXPECT_TRUE(FileBytes(path) == newBytes);
    EXPECT_TRUE(FileBytes(backup) == old);
    struct stat status;
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_FALSE(session.IsChanged());
    EXPECT_EQ(session.survey.SavedSampleCount, session.survey.SampleCount());
    EXPECT_TRUE(session.survey.SavedTime.isValid());
    EXPECT_EQ(session.settings.RecentFiles, QStringList{path});

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

TEST_F(SurveySaving, BackupIsNamedByTheFirstDotOfTheWholePath) {
    const QByteArray old = TestData(u"small-1003.qb"_s);
    // Two dots, a dot in the folder, no dot, a name that is its own backup.
    QDir(folder.path()).mkdir(u"sub.d"_s);
    const QString previous = QDir::currentPath();
    QDir::setCurrent(folder.path());
    const std::pair<QString, QString> cases[] = {
        {u"b.c.qb"_s, u"b.qb~"_s}, {u"sub.d/e.qb"_s, u"sub.qb~"_s}, {u"plain"_s, u"qb~"_s}, {u"own.qb~"_s, u""_s}};
    for (const auto& [name, expectedBackup] : cases) {
        for (const bool absolute : {true, false}) {
            if (absolute && name == u"plain"_s) continue;
            Put(folder.filePath(name), old);
            ASSERT_TRUE(Save(absolute ? folder.filePath(name) : name)) << qPrintable(name);
            EXPECT_TRUE(FileBytes(folder.filePath(name)) == newBytes) << qPrintable(name);
            QStringList names = Names();
            names.removeOne(name);
            EXPECT_EQ(names, expectedBackup.isEmpty() ? QStringList() : QStringList(expectedBackup));
            if (!expectedBackup.isEmpty()) {
                EXPECT_TRUE(FileBytes(folder.filePath(expectedBackup)) == old) << qPrintable(name);
            }
            QFile::remove(folder.filePath(expectedBackup));
        }
    }
    QDir::setCurrent(previous);

    // Upper case is refused, but only over a file.
    const QString upper = folder.filePath(u"f.QB~"_s);
    Put(upper, {});
    EXPECT_TRUE(Save(upper));
    WriteFileBytes(upper, old);
    session.ChangedOn();
    EXPECT_FALSE(Save(upper));
    EXPECT_EQ(user.Lines(u"message"_s),
              QStringList{u"message 0 クイブラ: ファイル名の拡張子を qb~ 以外にしてください -> Ok"_s});
    EXPECT_TRUE(FileBytes(upper) == old);
    EXPECT_TRUE(session.IsChanged());
}

TEST_F(SurveySaving, LinkedFileIsReplacedWhereItLies) {
    QDir(folder.path()).mkdir(u"real"_s);
    const QString real = folder.filePath(u"real/x.qb"_s);
    WriteFileBytes(real, "old");
    ASSERT_TRUE(QFile::link(real, path));
    ASSERT_TRUE(Save(path));
    EXPECT_TRUE(FileBytes(real) == newBytes);
    EXPECT_EQ(FileBytes(backup), "old");
    EXPECT_TRUE(QFileInfo(path).isSymLink());
}

TEST_F(SurveySaving, SelectionWritesItsSamplesOnly) {
    Survey read;
    Places some({70000 % session.survey.SampleCount(), 3, 5});
    ASSERT_TRUE(Save(path, &some));
    ASSERT_TRUE(ReadSurveyBytes(FileBytes(path), read));
    ASSERT_EQ(read.SampleCount(), 3);
    EXPECT_EQ(read.Samples.IDno(1), 3);
    EXPECT_EQ(read.Samples.IDno(2), 5);
    Places none({});
    ASSERT_TRUE(Save(path, &none));
    ASSERT_TRUE(ReadSurveyBytes(FileBytes(path), read));
    EXPECT_EQ(read.SampleCount(), 0);
    EXPECT_EQ(read.QuestionCount, session.survey.QuestionCount);
    Places stray({session.survey.SampleCount()});
    const QByteArray before = FileBytes(path);
    EXPECT_FALSE(Save(path, &stray));
    EXPECT_TRUE(FileBytes(path) == before);
}

TEST_F(SurveySaving, StopLeavesTheOldVersion) {
    const QByteArray old = TestData(u"small-1003.qb"_s);
    Put(path, old);
    WriteFileBytes(backup, "older");
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
        EXPECT_TRUE(session.settings.RecentFiles.isEmpty());
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

TEST_F(SurveySaving, WhatCannotBeWrittenIsRefusedBeforeAnythingMoves) {
    const QByteArray old = TestData(u"small-1003.qb"_s);
    EXPECT_FALSE(Save(folder.path()));
    EXPECT_EQ(user.Lines(u"message"_s), QStringList{u"message 48 クイブラ: パス名が無効です。"_s + kFailed});
    EXPECT_FALSE(Save(folder.filePath(u"missing/a.qb"_s)));
    EXPECT_EQ(user.Lines(u"message"_s), QStringList{u"message 48 クイブラ: パスが見つかりません。"_s + kFailed});

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
    Put(path, TestData(u"small-1003.qb"_s));
    constexpr int kNever = 1000;
    ArmFileFault(FaultKind::Error, kNever, EIO);
    ASSERT_TRUE(Save(path));
    DisarmFileFault();
    // The leftover of an earlier crash goes, the bytes come in two pieces; then each rename and its folder.
    EXPECT_EQ(FileCalls(), "unlink open write write fsync rename open fsync rename open fsync ");
}

TEST_F(SurveySaving, FailingDiskLeavesTheOldVersion) {
    const QByteArray old = TestData(u"small-1003.qb"_s);
    int faults = 0;
    for (int call = 1;; ++call) {
        Put(path, old);
        WriteFileBytes(backup, "older");
        session.ChangedOn();
        ArmFileFault(FaultKind::Error, call, ENOSPC);
        const bool saved = Save(path);
        DisarmFileFault();
        if (!FileFaultStruck()) {
            EXPECT_TRUE(saved);
            break;
        }
        ++faults;
        EXPECT_FALSE(saved) << call;
        EXPECT_EQ(user.Lines(u"message"_s),
                  QStringList{u"message 48 クイブラ: ディスクの空き容量が不足しています。"_s + kFailed})
            << call;
        EXPECT_TRUE(FileBytes(path) == old) << call;
        EXPECT_FALSE(Names().contains(u"a.qb~new"_s)) << call;
        EXPECT_TRUE(session.IsChanged());
    }
    EXPECT_GE(faults, 10);
}

TEST_F(SurveySaving, FailingDiskInAFirstSaveLeavesNoFileAndEndsInError53) {
    int thrown = 0;
    for (int call = 1;; ++call) {
        Put(path, {});
        user.transcript.clear();
        ArmFileFault(FaultKind::Error, call, ENOSPC);
        bool saved = false;
        try {
            saved = SurveySave(session, path);
        } catch (const RuntimeError& error) {
            ++thrown;
            EXPECT_EQ(error.Number(), kErrorFileNotFound);
        }
        DisarmFileFault();
        if (!FileFaultStruck()) {
            EXPECT_TRUE(saved);
            break;
        }
        EXPECT_FALSE(saved);
        EXPECT_EQ(user.Lines(u"message"_s),
                  QStringList{u"message 48 クイブラ: ディスクの空き容量が不足しています。"_s + kFailed});
        EXPECT_EQ(Names(), QStringList()) << call;
    }
    EXPECT_GE(thrown, 5);
}

TEST_F(SurveySaving, WhereverTheProcessOrTheDiskEndsAWholeVersionIsThere) {
    const QByteArray old = TestData(u"small-1003.qb"_s);
    for (const QString& name : {u"a.qb"_s, u"a.qb~"_s})
        for (const FaultKind kind : {FaultKind::Kill, FaultKind::DeadDisk}) {
            const QString target = folder.filePath(name);
            int faults = 0;
            for (int call = 1;; ++call) {
                Put(target, old);
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
                int status = 0;
                ASSERT_EQ(waitpid(child, &status, 0), child);
                ASSERT_TRUE(WIFEXITED(status));
                const auto isWhole = [&](const QString& at) {
                    if (!QFile::exists(at)) return false;
                    const QByteArray bytes = FileBytes(at);
                    return bytes == old || bytes == newBytes;
                };
                EXPECT_TRUE(isWhole(target) || isWhole(backup)) << qPrintable(name) << " at call " << call;
                if (WEXITSTATUS(status) == 0) break;
                ASSERT_EQ(WEXITSTATUS(status), kKilledStatus);
                ++faults;
            }
            EXPECT_TRUE(FileBytes(target) == newBytes);
            EXPECT_GE(faults, 7);
        }
}

TEST_F(SurveySaving, BackupOnAnotherFileSystemIsCopied) {
    const QByteArray old = TestData(u"small-1003.qb"_s);
    Put(path, old);
    ArmRenameFault(1, EXDEV);
    const bool saved = Save(path);
    DisarmFileFault();
    EXPECT_TRUE(saved && FileFaultStruck());
    EXPECT_TRUE(FileBytes(path) == newBytes);
    EXPECT_TRUE(FileBytes(backup) == old);
    EXPECT_EQ(Names(), (QStringList{u"a.qb"_s, u"a.qb~"_s}));
}

}  // namespace quibra
