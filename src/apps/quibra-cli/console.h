// What the verbs share: exit statuses, how a verb is refused, and the two streams it writes to. Data go to standard
// output, messages to standard error, both as UTF-8.
#pragma once

#include <QFile>
#include <QString>
#include <memory>

namespace quibra {

enum ExitStatus { kDone = 0, kRefused = 1, kWrongUsage = 2 };

// Thrown by a verb that can't go on: the reason in the user's words, empty when the user has been told already.
struct Refusal {
    QString reason;
    ExitStatus status = kRefused;
};
[[noreturn]] void RefuseUsage(const QString& reason);

// Opens standard input; refuses one that can't be read, and a second time.
void OpenStandardInput(QFile& input);

// A file to read from its start, or standard input, taken whole, when its name is "-". Refuses what can't be read, and
// standard input a second time.
std::unique_ptr<QIODevice> OpenInput(const QString& path);

// Text as a terminal may show it: control characters other than tabs and line ends as their pictures, so that a
// survey's text or a path can't move the cursor, change colours or type for the user.
QByteArray ShownOnTerminal(const QByteArray& text);

// One line on standard error.
void ErrorLine(const QString& text);

// Standard output.
class StandardOutput : public QIODevice {
  public:
    StandardOutput();
    bool isSequential() const override { return true; }

    // Writes all of it or throws a RuntimeError.
    void Print(const QByteArray& bytes);
    void Print(const QString& text) { Print(text.toUtf8()); }
    // True once nobody listens any more, which is no failure to speak of.
    bool IsAbandoned() const;
    bool IsTerminal() const { return terminal_; }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override;

  private:
    bool terminal_;
    int error_ = 0;
};

}  // namespace quibra
