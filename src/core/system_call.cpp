#include "core/system_call.h"

#include <unistd.h>

#include <QFile>

#include "core/runtime_error.h"

namespace quibra {

void ThrowErrno() {
    throw RuntimeError::FromErrno(errno);
}

QByteArray NativePath(const QString& path) {
    if (path.contains(QChar::Null)) throw RuntimeError(kErrorPathAccess);
    return QFile::encodeName(path);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
}

Descriptor::~Descriptor() {
    if (number_ >= 0) close(number_);
}

}  // namespace quibra
