// Walks all verbs: what each says of itself, and what is made of that.
#include "apps/quibra-cli/verbs.h"

#include "apps/quibra-cli/verb_texts.h"
#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

class VerbsTest : public CliTest {
  protected:
    // The words that the shell offers where the cursor stands behind the last word.
    QStringList Offered(const QStringList& words) const {
        const QString typed =
            u"source completion; COMP_WORDS=(quibra-cli %1); COMP_CWORD=%2; compopt() { :; }; "
            u"_quibra_cli; printf '%s\n' \"${COMPREPLY[@]}\""_s.arg(words.join(u' '))
                .arg(words.size());
        return QString::fromUtf8(RunProgram(u"bash"_s, {u"-c"_s, typed}).out).split(u'\n', Qt::SkipEmptyParts);
    }
};

TEST_F(VerbsTest, EachIsToldInHelpManualAndCompletionAndRefusesWhatItDoesNotKnow) {
    WriteFileBytes(folder_.filePath(u"completion"_s), BashCompletion().toUtf8());
    const QString manual = ManualPage(u"@VERBS@\n"_s, false);
    QStringList names;
    for (const Verb& verb : Verbs()) {
        SCOPED_TRACE(verb.name.toStdString());
        EXPECT_FALSE(names.contains(verb.name));
        names += verb.name;
        EXPECT_FALSE(verb.summary.isEmpty() || verb.text.isEmpty() || verb.english.isEmpty());
        const QString help = QString::fromUtf8(Done({verb.name, u"--help"_s}));
        EXPECT_TRUE(help.startsWith(verb.Usage()));
        EXPECT_TRUE(manual.contains(u".SS "_s + QString(verb.name).replace(u'-', u"\\-"_s) + u'\n'));
        QStringList options{u"--help"_s};
        for (const VerbOption& option : verb.options) {
            SCOPED_TRACE(option.name.toStdString());
            options += Dashed(option.name);
            EXPECT_TRUE(help.contains(u"\n  "_s + Dashed(option.name) + u' '));
            EXPECT_FALSE(option.text.isEmpty() || option.english.isEmpty());
            if (option.choices.isEmpty()) continue;
            EXPECT_EQ(Offered({verb.name, Dashed(option.name), u"''"_s}), option.choices);
        }
        EXPECT_EQ(Offered({verb.name, u"-"_s}), options);
        const CliRun unknown = Cli({verb.name, u"--no-such-option"_s});
        EXPECT_EQ(unknown.status, 2);
        EXPECT_EQ(unknown.err, u"知らないオプションです: --no-such-option\n"_s);
        const CliRun bare = Cli({verb.name});
        EXPECT_EQ(bare.status, 2);
        EXPECT_EQ(bare.err, u"%1 がありません。%2\n"_s.arg(verb.arguments.section(u' ', 0, 0), verb.Usage()));
    }
    EXPECT_EQ(Offered({u"''"_s}), names + QStringList({u"help"_s, u"--help"_s, u"--version"_s}));
    EXPECT_EQ(Offered({u"help"_s, u"es"_s}), QStringList(u"essays"_s));
    EXPECT_EQ(Offered({u"total"_s, u"--from"_s, u"''"_s}), QStringList()) << "a question is typed";
}

}  // namespace quibra
