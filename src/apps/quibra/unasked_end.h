// The end that nobody asked the program for: a signal, as of a shutdown or of Ctrl+C in a terminal, or a display that
// is gone.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace quibra {

class UnaskedEnd : public QObject {
  public:
    // `lastDeed` is called once, from the message loop for a signal, in the midst of what broke for an abort, and from
    // within exit() for a lost display; it must
    // throw nothing. The process then ends as it would have without. One object at a time, behind the QApplication.
    explicit UnaskedEnd(std::function<void()> lastDeed);
    // From here on the end is the program's own.
    ~UnaskedEnd() override;

    void DoLastDeed();

  private:
    void OnSignal();

    std::function<void()> lastDeed_;
    std::unique_ptr<QSocketNotifier> arrivals_;
    int pipe_[2];
};

}  // namespace quibra
