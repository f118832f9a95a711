// The ends that a program can come to. Their tests need a QApplication of the program's own kind, and so a main() of
// their own.
#include "apps/quibra/application.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "apps/quibra/start_up.h"
#include "apps/quibra/unasked_end.h"
#include "core/runtime_error.h"
#include "core/settings.h"
#include "session/rescue.h"
#include "support/scripted_interface.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

Application* application = nullptr;

void Say(const QString& error) {
    std::fprintf(stderr, "last words: %s\n", qUtf8Printable(error));
}

// Presses a button whose handler does `work`.
void PressFor(const std::function<void()>& work) {
    QPushButton button;
    QObject::connect(&button, &QPushButton::clicked, &button, work);
    button.show();
    QTest::mouseClick(&button, Qt::LeftButton);
}

TEST(Application, UnhandledErrorIsTheEndAfterItsLastWords) {
    application->SetLastWords(Say);
    const auto ends = testing::ExitedWithCode(Application::kBrokenStatus);
    EXPECT_EXIT(PressFor([] { throw RuntimeError(kErrorOverflow); }), ends, "^last words: オーバーフローしました。\n$");
    EXPECT_EXIT(PressFor([] { throw std::bad_alloc(); }), ends, "^last words: メモリが不足しています。\n$");
    // Thrown below a loop inside the handler, as from a modal window.
    EXPECT_EXIT(PressFor([] {
                    QTimer::singleShot(0, application, [] { throw RuntimeError(kErrorSubscript); });
                    QTest::qWait(10);
                    Say(QStringLiteral("went on"));
                }),
                ends, "^last words: インデックスが有効範囲にありません。\n$");
}

TEST(Application, WordsThatFailThemselvesAreTheLast) {
    application->SetLastWords([](const QString& error) {
        Say(error);
        PressFor([] { throw RuntimeError(kErrorDiskFull); });
        Say(QStringLiteral("went on"));
    });
    EXPECT_EXIT(PressFor([] { throw RuntimeError(kErrorOverflow); }),
                testing::ExitedWithCode(Application::kBrokenStatus), "^last words: オーバーフローしました。\n$");
}

// The program with a changed survey, until `end` has ended it.
void WorkUntil(const ProgramFolders& folders, const QString& survey, const std::function<void()>& end) {
    ScriptedInterface user;
    StartUp program(user, folders);
    const UnaskedEnd unaskedEnd([&] { LeaveUnasked(program.Session()); });
    if (!program.Run(survey)) return;
    program.Session().survey.Editor = u"変更した人"_s;
    program.Session().ChangedOn();
    QTimer::singleShot(0, application, end);
    QApplication::exec();
}

TEST(UnaskedEnd, WorkIsRescuedAndOfferedAtTheNextStart) {
    const struct {
        std::function<void()> end;
        std::function<bool(int)> status;
    } cases[] = {{[] { std::raise(SIGTERM); }, testing::KilledBySignal(SIGTERM)},
                 {[] { std::raise(SIGINT); }, testing::KilledBySignal(SIGINT)},
                 {[] { std::raise(SIGHUP); }, testing::KilledBySignal(SIGHUP)},
                 {[] { std::raise(SIGQUIT); }, testing::KilledBySignal(SIGQUIT)},
                 {[] { std::abort(); }, testing::KilledBySignal(SIGABRT)},
                 // As Qt does when the display is gone.
                 {[] { std::exit(1); }, testing::ExitedWithCode(1)}};
    for (const auto& [end, status] : cases) {
        const QTemporaryDir folder;
        const QString survey = folder.filePath(u"a.qb"_s);
        ASSERT_TRUE(QFile::copy(QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb"), survey));
        const ProgramFolders folders{
            .data = folder.filePath(u"data"_s), .runtime = folder.path(), .settings = folder.filePath(u"quibra.ini"_s)};
        EXPECT_EXIT(WorkUntil(folders, survey, end), status, "");
        const QStringList rescued = QDir(folder.path()).entryList({u"a.rescue-*.qb"_s});
        ASSERT_EQ(rescued.size(), 1);

        ScriptedInterface user;
        user.messageAnswers = {Answer::Yes};
        StartUp next(user, folders);
        ASSERT_TRUE(next.Run({}));
        const QString rescue = folder.filePath(rescued[0]);
        EXPECT_EQ(user.transcript.value(0).toStdString(),
                  (u"message 36 クイブラダイレクトスタート: "_s + rescue + u"を読み込みますか -> Yes"_s).toStdString());
        EXPECT_EQ(next.Session().survey.FileName, rescue);
        EXPECT_EQ(next.Session().survey.Editor, u"変更した人"_s);
        EXPECT_EQ(next.Session().settings.RecentFiles[1], survey);
    }
}

TEST(UnaskedEnd, SignalThatTheProgramWasStartedToIgnoreStaysIgnored) {
    const auto ignoring = [] {
        std::signal(SIGHUP, SIG_IGN);
        const UnaskedEnd unaskedEnd([] { Say(u"ended"_s); });
        QTimer::singleShot(0, application, [] { std::raise(SIGHUP); });
        QTimer::singleShot(50, application, [] { QCoreApplication::exit(4); });
        std::_Exit(QApplication::exec());
    };
    EXPECT_EXIT(ignoring(), testing::ExitedWithCode(4), "^$");
}

}  // namespace
}  // namespace quibra

int main(int argc, char** argv) {
    quibra::Application application(argc, argv);
    quibra::application = &application;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
