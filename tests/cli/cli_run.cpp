#include "cli/cli_run.h"

#include <QFile>
#include <QFileInfo>

#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kProgram = QStringLiteral(QUIBRA_BIN_DIR) + u"/quibra-cli"_s;

}  // namespace

CliRun RunProgram(const QString& program, const QStringList& arguments, const QString& folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    CliRun run;
    if (!process.waitForFinished(120000)) return run;
    if (process.exitStatus() == QProcess::NormalExit) run.status = process.exitCode();
    run.out = process.readAllStandardOutput();
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

CliRun RunShell(const QString& command, const QString& folder) {
    return RunProgram(u"bash"_s, {u"-c"_s, u"CLI=\"$0\"; "_s + command, kProgram}, folder);
}

CliRun CliTest::Cli(const QStringList& arguments) const {
    return RunProgram(kProgram, arguments, folder_.path());
}

QByteArray CliTest::Done(const QStringList& arguments) const {
    const CliRun run = Cli(arguments);
    EXPECT_EQ(run.status, 0) << arguments.join(u' ').toStdString();
    EXPECT_EQ(run.err.toStdString(), "") << arguments.join(u' ').toStdString();
    return run.out;
}

QString CliTest::Refused(const QStringList& arguments, int status) const {
    const CliRun run = Cli(arguments);
    EXPECT_EQ(run.status, status) << arguments.join(u' ').toStdString();
    EXPECT_EQ(run.out.toStdString(), "") << arguments.join(u' ').toStdString();
    return run.err;
}

QString CliTest::Copy(const QString& name) const {
    const QString source = name.startsWith(u"residents") ? SamplePath(name) : TestDataPath(name);
    const QString target = Path(name);
    WriteFileBytes(target, FileBytes(source));
    return target;
}

QString CliTest::SamplePath(const QString& name) {
    return QStringLiteral(QUIBRA_SOURCE_DIR) + u"/data/samples/"_s + name;
}

QJsonObject JsonOf(const QByteArray& text) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << " at " << error.offset;
    return document.object();
}

QList<QStringList> Cells(const QByteArray& text) {
    QList<QStringList> rows;
    for (const QString& line : QString::fromUtf8(text).split(u'\n'))
        rows += line.split(u'\t');
    return rows;
}

}  // namespace quibra
