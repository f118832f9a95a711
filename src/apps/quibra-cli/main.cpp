// quibra-cli: surveys from the command line, one verb a run.
#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <QCoreApplication>
#include <clocale>
#include <csignal>
#include <cstring>
#include <new>

#include "apps/quibra-cli/verbs.h"
#include "core/runtime_error.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

struct Verb {
    QString name;
    QString summary;
    int (*run)(const QStringList& arguments, StandardOutput& out);
};

const QList<Verb>& Verbs() {
    static const QList<Verb> verbs = {
        {u"info"_s, u"アンケートのあらましを表示する"_s, RunInfo},
        {u"total"_s, u"集計する（単純集計・クロス集計）"_s, RunTotal},
        {u"essays"_s, u"記述文を一覧にする"_s, RunEssays},
        {u"get"_s, u"サンプルの回答を読む"_s, RunGet},
        {u"set"_s, u"サンプルの回答を書き換えて保存する"_s, RunSet},
        {u"dump"_s, u"アンケートを JSON で書き出す"_s, RunDump},
        {u"build"_s, u"JSON からアンケートを作る"_s, RunBuild},
        {u"convert"_s, u"古い形式のアンケートを今の形式で保存する"_s, RunConvert},
    };
    return verbs;
}

QString Overview() {
    QString text = u"使い方: quibra-cli コマンド [オプション] ...\n\n"_s;
    for (const Verb& verb : Verbs())
        text += u"  %1 %2\n"_s.arg(verb.name, -8).arg(verb.summary);
    text +=
        u"\n質問番号は1から数えます。各コマンドの説明: quibra-cli コマンド --help\n"_s
        u"終了コード: 0 完了、1 拒否または失敗、2 使い方の誤り\n"_s;
    return text;
}

int RunVerb(const QStringList& words, StandardOutput& out) {
    const QString name = words.value(0);
    if (name == u"--help" || name == u"help") {
        out.Print(Overview());
        return kDone;
    }
    if (name == u"--version") {
        out.Print(u"quibra-cli %1\n"_s.arg(QCoreApplication::applicationVersion()));
        return kDone;
    }
    if (name.isEmpty()) RefuseUsage(Overview().trimmed());
    for (const Verb& verb : Verbs())
        if (verb.name == name) return verb.run(words.mid(1), out);
    RefuseUsage(u"「%1」というコマンドはありません。quibra-cli --help で一覧を表示します。"_s.arg(name));
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

// Words and file names are UTF-8 even where the caller has set no locale, as jobs of a schedule haven't.
void UseUtf8() {
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) qputenv("LC_ALL", "C.UTF-8");
}

}  // namespace

int main(int argc, char** argv) {
    HoldStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    UseUtf8();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"quibra-cli"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUIBRA_VERSION));
    return Run(QCoreApplication::arguments().mid(1));
}
