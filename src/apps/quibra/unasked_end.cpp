#include "apps/quibra/unasked_end.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace quibra {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGABRT};
constexpr unsigned kLastDeedSeconds = 60;

UnaskedEnd* current = nullptr;  // set once its signals are
volatile std::sig_atomic_t pipeEnd = -1;

// Little is allowed in a signal handler: the message loop does the rest.
void PassOn(int signal) {
    // An abort ends the process as soon as this returns. The last deed may fail in what is broken already, and hang in
    // it; then there is nothing to lose.
    if (signal == SIGABRT) {
        alarm(kLastDeedSeconds);
        if (current) current->DoLastDeed();
        return;
    }
    const int error = errno;
    const char byte = static_cast<char>(signal);
    // The pipe is empty, and there is nobody to tell if it were not.
    if (write(pipeEnd, &byte, 1) != 1) std::raise(signal);
    errno = error;
}

}  // namespace

UnaskedEnd::UnaskedEnd(std::function<void()> lastDeed) : lastDeed_(std::move(lastDeed)) {
    if (pipe2(pipe_, O_CLOEXEC) != 0) {
        pipe_[0] = pipe_[1] = -1;
    } else {
        pipeEnd = pipe_[1];
        arrivals_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
        connect(arrivals_.get(), &QSocketNotifier::activated, this, &UnaskedEnd::OnSignal);
        for (const int signal : kSignals) {
            struct sigaction action = {};
            // One that the program was started to ignore, as by nohup, stays ignored.
            if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
            action.sa_handler = PassOn;
            // The second one ends a program whose message loop hangs.
            action.sa_flags = SA_RESTART | SA_RESETHAND;
            sigaction(signal, &action, nullptr);
        }
    }
    // Qt's answer to a lost display is exit().
    static const int registered = std::atexit([] {
        if (current) current->DoLastDeed();
    });
    static_cast<void>(registered);
    current = this;
}

UnaskedEnd::~UnaskedEnd() {
    current = nullptr;
    for (const int signal : kSignals) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == PassOn) std::signal(signal, SIG_DFL);
    }
    arrivals_.reset();
    for (const int end : pipe_)
        if (end >= 0) close(end);
}

void UnaskedEnd::OnSignal() {
    char signal = 0;
    if (read(pipe_[0], &signal, 1) != 1) return;
    DoLastDeed();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void UnaskedEnd::DoLastDeed() {
    if (const auto deed = std::exchange(lastDeed_, {})) deed();
}

}  // namespace quibra
