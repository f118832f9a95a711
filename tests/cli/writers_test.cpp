// Programs that write one survey at the same time, and ends in the middle of a save.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QProcess>
#include <csignal>

#include "cli/cli_run.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {

class Writers : public CliTest {
  protected:
    void SetUp() override { Copy(SourcePath(u"data/samples/residents.qb"_s)); }
    void Start(QProcess& process, const QString& commands) const {
        process.setWorkingDirectory(folder_.path());
        process.start(u"bash"_s, {u"-c"_s, u"PATH=%1:$PATH; "_s.arg(QStringLiteral(QUIBRA_BIN_DIR)) + commands});
    }
    QStringList Names() const { return QDir(folder_.path()).entryList(QDir::Files, QDir::Name); }
};

TEST_F(Writers, NothingIsLostOfFiftyPairsThatSaveAtTheSameTime) {
    constexpr int kPairs = 50;
    const QString kIDs[] = {u"1001"_s, u"3044"_s};
    for (int pair = 0; pair < kPairs; ++pair) {
        QProcess writers[2];
        const QString answer = QString::number(1 + pair % 2);
        for (int i = 0; i < 2; ++i)
            Start(writers[i], u"exec quibra-cli set residents.qb %1 1 %2"_s.arg(kIDs[i], answer));
        for (QProcess& writer : writers) {
            ASSERT_TRUE(writer.waitForFinished(60000));
            ASSERT_EQ(writer.exitCode(), 0) << writer.readAllStandardError().constData();
        }
        for (const QString& id : kIDs)
            ASSERT_EQ(Done({u"get"_s, u"residents.qb"_s, id, u"1"_s}), answer.toUtf8() + '\n') << pair;
    }
    EXPECT_EQ(Names(), (QStringList{u"residents.qb"_s, u"residents.qb~"_s}));
}

TEST_F(Writers, EndInTheMiddleOfASaveLeavesTheSurveyAndNothingBesideIt) {
    const QByteArray before = Done({u"dump"_s, u"residents.qb"_s});
    // A file beyond the limit of the user.
    QProcess limited;
    Start(limited, u"ulimit -f 8; exec quibra-cli set residents.qb 1001 1 1"_s);
    ASSERT_TRUE(limited.waitForFinished(60000));
    EXPECT_EQ(limited.exitCode(), 1);
    EXPECT_EQ(QString::fromUtf8(limited.readAllStandardError()),
              u"ディスクの空き容量が不足しています。\n正しく保存出来ませんでした。\n"_s);
    EXPECT_EQ(Names(), QStringList{u"residents.qb"_s});
    // Ctrl+C while it waits for its input, which is a pipe that opens once both ends are there.
    const QByteArray pipe = QFile::encodeName(folder_.filePath(u"in.json"_s));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    QProcess stopped;
    Start(stopped, u"exec quibra-cli build in.json new.qb"_s);
    ASSERT_TRUE(stopped.waitForStarted());
    const int end = open(pipe.constData(), O_WRONLY | O_CLOEXEC);
    ::kill(static_cast<pid_t>(stopped.processId()), SIGINT);
    ASSERT_TRUE(stopped.waitForFinished(60000));
    close(end);
    unlink(pipe.constData());
    EXPECT_EQ(stopped.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(QString::fromUtf8(stopped.readAllStandardError()), u"\n中断しました。\n"_s);
    EXPECT_EQ(Names(), QStringList{u"residents.qb"_s});
    EXPECT_EQ(Done({u"dump"_s, u"residents.qb"_s}), before);
}

}  // namespace quibra
