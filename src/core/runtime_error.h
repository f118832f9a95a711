// The one exception of the domain: what the system calls a run-time error, by number, with a text the user may read.
// Refusals are no run-time errors: they are messages through the UserInterface and an outcome.
#pragma once

#include <QString>
#include <exception>

namespace quibra {

enum RuntimeErrorNumber {
    kErrorInvalidCall = 5,
    kErrorOverflow = 6,
    kErrorOutOfMemory = 7,
    kErrorSubscript = 9,
    kErrorTypeMismatch = 13,
    kErrorFileNotFound = 53,
    kErrorFileAlreadyOpen = 55,
    kErrorDeviceIo = 57,
    kErrorFileExists = 58,
    kErrorDiskFull = 61,
    kErrorPastEnd = 62,
    kErrorPermission = 70,
    kErrorPathAccess = 75,
    kErrorPathNotFound = 76,
};

class RuntimeError : public std::exception {
  public:
    explicit RuntimeError(int number);
    RuntimeError(int number, QString text);

    int Number() const { return number_; }
    const QString& Text() const { return text_; }
    const char* what() const noexcept override { return utf8_.constData(); }

    // The number and text that a failed system call stands for; `error` is an errno value.
    static RuntimeError FromErrno(int error);

  private:
    int number_;
    QString text_;
    QByteArray utf8_;
};

}  // namespace quibra
