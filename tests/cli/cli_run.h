// Runs of the built quibra-cli as a process, in a folder of their own that goes with the test.
#pragma once

#include <gtest/gtest.h>

#include <QJsonObject>
#include <QTemporaryDir>

#include "support/qt_printers.h"

namespace quibra {

// What a run has left. Standard output is bytes, since HTML is in code page 932.
struct CliRun {
    int status = -1;  // -1 when it crashed or hung
    QByteArray out;
    QString err;
};

QString SourcePath(const QString& name);

class CliTest : public testing::Test {
  protected:
    // In the folder, with the built programs first in PATH, the project in SOURCE, the interpreter of scripts in PYTHON
    // and the functions of sessions/.
    CliRun RunProgram(const QString& program, const QStringList& arguments) const;
    CliRun Cli(const QStringList& arguments) const;
    // What quibra-cli prints; it must have nothing to complain of.
    QByteArray Done(const QStringList& arguments) const;
    // The same as rows of cells.
    QList<QStringList> Cells(const QStringList& arguments) const;
    QJsonObject Json(const QStringList& arguments) const;
    void Copy(const QString& path) const;  // into the folder

    QTemporaryDir folder_;
};

}  // namespace quibra
