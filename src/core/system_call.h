// What all that asks the system for files shares: paths as the system wants them, calls that are run again when a
// signal interrupts them, and open files that close themselves. A failed call is a RuntimeError with the number and
// text of its errno.
#pragma once

#include <QByteArray>
#include <QString>
#include <cerrno>
#include <utility>

namespace quibra {

[[noreturn]] void ThrowErrno();

template <typename Call>
auto Checked(Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0) return result;
        if (errno != EINTR) ThrowErrno();
    }
}

// Throws for a path with a zero byte: cut there, it would be that of another file.
QByteArray NativePath(const QString& path);

// The number of an open file; -1 is none.
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    int Number() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }
    // The caller closes it from here on.
    int Release() { return std::exchange(number_, -1); }

  private:
    int number_;
};

}  // namespace quibra
