// quibra-cli: surveys from the command line, one verb a run.
#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <QGuiApplication>
#include <clocale>
#include <csignal>
#include <cstring>
#include <memory>
#include <new>

#include "apps/quibra-cli/verb_line.h"
#include "apps/quibra-cli/verb_texts.h"
#include "apps/quibra-cli/verbs.h"
#include "core/runtime_error.h"
#include "core/whole_file.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

int RunVerb(const QStringList& words, StandardOutput& out) {
    const QString name = words.value(0);
    if (name == u"--version") {
        out.Print(u"quibra-cli %1\n"_s.arg(QCoreApplication::applicationVersion()));
        return kDone;
    }
    if (name.isEmpty()) RefuseUsage(Overview().trimmed());
    const bool help = name == u"--help" || name == u"-h" || name == u"help";
    if (help && words.size() == 1) {
        out.Print(Overview());
        return kDone;
    }
    const Verb* verb = FindVerb(help ? words[1] : name);
    if (!verb)
        RefuseUsage(
            u"「%1」というコマンドはありません。quibra-cli --help で一覧を表示します。"_s.arg(words[help ? 1 : 0]));
    if (!help) {
        const VerbLine line(*verb, words.mid(1));
        if (!line.WantsHelp()) return verb->run(line, out);
    }
    out.Print(HelpText(*verb));
    return kDone;
}

int Run(const QStringList& words) {
    StandardOutput out;
    try {
        return RunVerb(words, out);
    } catch (const Refusal& refusal) {
        if (!refusal.reason.isEmpty()) ErrorLine(refusal.reason);
        return refusal.status;
    } catch (const RuntimeError& error) {
        if (!out.IsAbandoned()) ErrorLine(error.Text());
    } catch (const std::bad_alloc&) {
        ErrorLine(RuntimeError(kErrorOutOfMemory).Text());
    }
    return kRefused;
}

// A survey that is opened must never get the number of a stream that the caller has closed: what is written to that
// stream would go into the file. Standard output is held by a descriptor that can't be written to.
void HoldStandardStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) < 0) open("/dev/null", descriptor == STDOUT_FILENO ? O_RDONLY : O_RDWR);
}

// Ctrl+C and its like, at any point of a run: what is half written goes.
void EndEarly(int signal) {
    RemoveGrowingFiles();
    constexpr char kWords[] = "\n中断しました。\n";
    const bool alone = write(STDERR_FILENO, kWords, sizeof kWords - 1) < 0;
    static_cast<void>(alone);  // nobody to tell
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void HandleSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);  // a file beyond the user's limit is an error of the write, told like a full disk
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        // One that the program was started to ignore, as by nohup, stays ignored.
        if (std::signal(signal, EndEarly) == SIG_IGN) std::signal(signal, SIG_IGN);
}

// Words and file names are UTF-8 even where the caller has set no locale, as jobs of a schedule haven't.
void UseUtf8() {
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) qputenv("LC_ALL", "C.UTF-8");
}

// What draws needs fonts, though no screen. Qt must not see the words: it would take some of them, such as --reverse,
// for its own.
std::unique_ptr<QCoreApplication> MakeApplication(const QStringList& words, int& count, char** program) {
    count = 1;
    const Verb* verb = FindVerb(words.value(0));
    if (!verb || !verb->draws) return std::make_unique<QCoreApplication>(count, program);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt warns of what a program without a desktop lacks.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return std::make_unique<QGuiApplication>(count, program);
}

}  // namespace

int main(int argc, char** argv) {
    HoldStandardStreams();
    HandleSignals();
    UseUtf8();
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words += QString::fromLocal8Bit(argv[i]);
    const std::unique_ptr<QCoreApplication> application = MakeApplication(words, argc, argv);
    QCoreApplication::setApplicationName(u"quibra-cli"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUIBRA_VERSION));
    return Run(words);
}
