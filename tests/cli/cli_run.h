// Runs of the built quibra-cli as a process, in a folder of their own that goes with the test.
#pragma once

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <ostream>

namespace quibra {

// What a run has left. Standard output is bytes, since HTML is in code page 932.
struct CliRun {
    int status = -1;  // -1 when it crashed or hung
    QByteArray out;
    QString err;
};
CliRun RunProgram(const QString& program, const QStringList& arguments, const QString& folder);
// The same through the shell, for redirections: "$CLI" is the program.
CliRun RunShell(const QString& command, const QString& folder);

class CliTest : public testing::Test {
  protected:
    CliRun Cli(const QStringList& arguments) const;
    // The run must end with `status`; a run that fails says why in `err`, one that is done says nothing there.
    QByteArray Done(const QStringList& arguments) const;
    QString Refused(const QStringList& arguments, int status = 1) const;

    // A path in the test's folder; a copy of a file of tests/data or of the sample survey there.
    QString Path(const QString& name) const { return folder_.filePath(name); }
    QString Copy(const QString& name) const;
    static QString SamplePath(const QString& name);

    QTemporaryDir folder_;
};

QJsonObject JsonOf(const QByteArray& text);
// Rows of cells, parted by line feeds and tabs.
QList<QStringList> Cells(const QByteArray& text);

}  // namespace quibra
