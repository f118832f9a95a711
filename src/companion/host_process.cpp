#include "companion/host_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

#include "companion/extern_message.h"
#include "companion/plugin_host.h"
#include "companion/quibra_plugin.h"

extern char** environ;

namespace quibra {

namespace {

using Clock = std::chrono::steady_clock;

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Number() const { return number_; }

  private:
    int number_;
};

// The host as a child process. The destructor ends it, and whatever it has started when it had to be ended.
class Host {
  public:
    ~Host() {
        if (pid_ <= 0) return;
        kill(done_ ? pid_ : -pid_, SIGKILL);
        while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }

    // 0 or an errno value. The host gets the socket `end` under the number it expects.
    int Start(const std::string& program, int end) {
        posix_spawn_file_actions_t actions;
        posix_spawnattr_t attributes;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, end, kHostSocket);
        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        std::string word = program;
        char* const words[] = {word.data(), nullptr};
        const int error = posix_spawn(&pid_, program.c_str(), &actions, &attributes, words, environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) pid_ = 0;
        return error;
    }

    void Done() { done_ = true; }

  private:
    pid_t pid_ = 0;
    bool done_ = false;
};

// One end of the conversation, with the moment at which patience ends.
class Line {
  public:
    Line(int socket, Clock::time_point end) : socket_(socket), end_(end) {}

    int Send(const std::string& bytes) const {
        for (size_t sent = 0; sent < bytes.size();) {
            const ssize_t count = send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count >= 0) {
                sent += static_cast<size_t>(count);
            } else if (const int error = AfterFailure(POLLOUT)) {
                return error;
            }
        }
        return 0;
    }

    // Appends to `bytes` until there are `size` of them. Memory is taken for what has come, not for what was promised.
    int Receive(std::string& bytes, size_t size) const {
        std::array<char, 65536> piece;
        while (bytes.size() < size) {
            const size_t wanted = std::min(size - bytes.size(), piece.size());
            const ssize_t count = recv(socket_, piece.data(), wanted, MSG_DONTWAIT);
            if (count == 0) return ECHILD;
            if (count > 0) {
                bytes.append(piece.data(), static_cast<size_t>(count));
            } else if (const int error = AfterFailure(POLLIN)) {
                return error;
            }
        }
        return 0;
    }

  private:
    // Waits until the other side is ready for more. A side that has gone has not answered.
    int AfterFailure(short events) const {
        if (errno == EINTR) return 0;
        if (errno != EAGAIN) return errno == EPIPE || errno == ECONNRESET ? ECHILD : errno;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now()).count();
        if (left <= 0) return ETIMEDOUT;
        pollfd ready{socket_, events, 0};
        return poll(&ready, 1, static_cast<int>(left)) < 0 && errno != EINTR ? errno : 0;
    }

    int socket_;
    Clock::time_point end_;
};

}  // namespace

int RunHost(const std::string& host, const std::string& message, size_t longest, std::string& body) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return errno;
    const Descriptor ours(ends[0]);
    Host process;
    {
        const Descriptor theirs(ends[1]);
        if (const int error = process.Start(host, theirs.Number())) return error;
    }
    const Line line(ours.Number(), Clock::now() + std::chrono::seconds(QUIBRA_EXTERN_SECONDS));
    if (const int error = line.Send(message)) return error;
    std::string length;
    if (const int error = line.Receive(length, kLengthBytes)) return error;
    if (BodyLength(length.data()) > longest) return EPROTO;
    if (const int error = line.Receive(body, BodyLength(length.data()))) return error;
    process.Done();
    return 0;
}

}  // namespace quibra
