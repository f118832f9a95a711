// Sessions at a shell, each a text of sessions/: after "$ " what is typed, below it what standard output says, what
// standard error says behind "! ", and a status other than 0 behind "= ". FOLDER is where it is typed: a folder with
// copies of the surveys of tests/data and of the sample survey. sessions/functions.sh has what is typed often.
#include <QDir>

#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

class CliSession : public CliTest, public testing::WithParamInterface<const char*> {};

TEST_P(CliSession, GoesAsItIsTold) {
    Copy(SourcePath(u"data/samples/residents.qb"_s));
    for (const QFileInfo& survey : QDir(TestDataPath(QString())).entryInfoList(QDir::Files))
        Copy(survey.filePath());
    const QString session =
        QString::fromUtf8(FileBytes(SourcePath(u"tests/cli/sessions/%1.txt"_s.arg(QLatin1StringView(GetParam())))));
    for (const QString& told : (u'\n' + session).chopped(1).split(u"\n$ "_s, Qt::SkipEmptyParts)) {
        QString said = told.section(u'\n', 0, 0);
        const CliRun run = RunProgram(u"bash"_s, {u"-c"_s, said});
        const auto tell = [&](QString text, const QString& mark) {
            if (text.isEmpty()) return;
            if (text.endsWith(u'\n')) text.chop(1);
            for (const QString& line : text.replace(folder_.path(), u"FOLDER"_s).split(u'\n'))
                said += u'\n' + mark + line;
        };
        tell(QString::fromUtf8(run.out), QString());
        tell(run.err, u"! "_s);
        if (run.status != 0) said += u"\n= %1"_s.arg(run.status);
        EXPECT_EQ(said.toStdString(), told.toStdString());
    }
}

INSTANTIATE_TEST_SUITE_P(Cli, CliSession,
                         testing::Values("answers", "conditions", "definitions", "design", "entry", "essays", "files",
                                         "lines", "locks", "options", "outputs", "results", "saving", "sheets",
                                         "streams", "tables", "usage"));

}  // namespace quibra
