// The examples of the READMEs are what the program prints, and both show the same.
#include <QRegularExpression>

#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

class ReadmeTest : public CliTest {
  protected:
    // What stands in the fenced blocks that call the tool.
    static QStringList Examples(const QString& name) {
        static const QRegularExpression fenced(
            u"^```\\n(\\$ build/release/bin/quibra-cli .*?)^```$"_s,
            QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
        QStringList examples;
        for (const auto& match : fenced.globalMatch(QString::fromUtf8(FileBytes(SourcePath(name)))))
            examples += match.captured(1);
        return examples;
    }

    // The cells that hold something: tabs part them in the program's output, blanks in a README.
    static QList<QStringList> Cells(const QString& text, const QString& parting) {
        QList<QStringList> rows;
        for (const QString& line : text.trimmed().split(u'\n'))
            rows += line.trimmed().split(QRegularExpression(parting), Qt::SkipEmptyParts);
        return rows;
    }
};

TEST_F(ReadmeTest, ExamplesAreWhatTheProgramPrintsAndTheSameInBothLanguages) {
    const QStringList examples = Examples(u"README.md"_s);
    EXPECT_EQ(examples.size(), 2);
    EXPECT_EQ(Examples(u"README.en.md"_s), examples);
    for (const QString& example : examples) {
        const QString command = example.section(u'\n', 0, 0).mid(2).remove(u"build/release/bin/"_s);
        const CliRun run = RunProgram(u"bash"_s, {u"-c"_s, u"cd \"$SOURCE\"; "_s + command});
        EXPECT_EQ(Cells(QString::fromUtf8(run.out), u"\t"_s), Cells(example.section(u'\n', 1), u" {2,}"_s))
            << command.toStdString();
    }
}

}  // namespace quibra
