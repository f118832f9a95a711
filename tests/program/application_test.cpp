// The message loop's top. Its tests need a QApplication of the program's own kind, and so a main() of their own.
#include "apps/quibra/application.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <new>

#include "core/runtime_error.h"

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

}  // namespace
}  // namespace quibra

int main(int argc, char** argv) {
    quibra::Application application(argc, argv);
    quibra::application = &application;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
