#include "cli/cli_run.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>

#include "support/survey_bytes.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {

QString SourcePath(const QString& name) {
    return QStringLiteral(QUIBRA_SOURCE_DIR "/") + name;
}

CliRun CliTest::RunProgram(const QString& program, const QStringList& arguments) const {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, QStringLiteral(QUIBRA_BIN_DIR ":") + environment.value(u"PATH"_s));
    environment.insert(u"SOURCE"_s, SourcePath(QString()));
    environment.insert(u"BASH_ENV"_s, SourcePath(u"tests/cli/sessions/functions.sh"_s));
    environment.insert(u"PYTHON"_s, QStringLiteral(QUIBRA_PYTHON));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder_.path());
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit) return {};
    return {process.exitCode(), process.readAllStandardOutput(), QString::fromUtf8(process.readAllStandardError())};
}

CliRun CliTest::Cli(const QStringList& arguments) const {
    return RunProgram(QStringLiteral(QUIBRA_BIN_DIR "/quibra-cli"), arguments);
}

QByteArray CliTest::Done(const QStringList& arguments) const {
    const CliRun run = Cli(arguments);
    EXPECT_EQ(run.status, 0) << arguments.join(u' ').toStdString();
    EXPECT_EQ(run.err, QString()) << arguments.join(u' ').toStdString();
    return run.out;
}

QList<QStringList> CliTest::Cells(const QStringList& arguments) const {
    QList<QStringList> rows;
    for (const QString& line : QString::fromUtf8(Done(arguments)).split(u'\n'))
        rows += line.split(u'\t');
    return rows;
}

QJsonObject CliTest::Json(const QStringList& arguments) const {
    return QJsonDocument::fromJson(Done(arguments)).object();
}

void CliTest::Copy(const QString& path) const {
    WriteFileBytes(folder_.filePath(QFileInfo(path).fileName()), FileBytes(path));
}

}  // namespace quibra
