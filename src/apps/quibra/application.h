// The message loop's top: the last place that sees a run-time error. Sets what holds for the whole process, too.
#pragma once

#include <QApplication>
#include <functional>

namespace quibra {

class Application : public QApplication {
  public:
    // The exit status of a program that a run-time error has ended.
    static constexpr int kBrokenStatus = 3;

    Application(int& argc, char** argv);

    // `lastWords` is called with the text of an error that nobody handled; the process ends when it returns.
    void SetLastWords(std::function<void(const QString& error)> lastWords) { lastWords_ = std::move(lastWords); }

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    [[noreturn]] void End(const QString& error);

    std::function<void(const QString&)> lastWords_;
    bool ending_ = false;
};

}  // namespace quibra
