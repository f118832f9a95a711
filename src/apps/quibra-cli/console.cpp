#include "apps/quibra-cli/console.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

void RefuseUsage(const QString& reason) {
    throw Refusal{reason, kWrongUsage};
}

void ErrorLine(const QString& text) {
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    std::fputs((lines + u'\n').toUtf8().constData(), stderr);
}

void StandardOutput::Print(const QByteArray& bytes) {
    if (write(bytes) != bytes.size()) throw RuntimeError(kErrorDeviceIo, errorString());
}

bool StandardOutput::IsAbandoned() const {
    return error_ == EPIPE;
}

qint64 StandardOutput::writeData(const char* data, qint64 size) {
    qint64 done = 0;
    while (done < size) {
        const ssize_t step = ::write(STDOUT_FILENO, data + done, static_cast<size_t>(size - done));
        if (step < 0 && errno == EINTR) continue;
        if (step < 0) {
            error_ = errno;
            setErrorString(u"標準出力に書けません。"_s + RuntimeError::FromErrno(error_).Text());
            return -1;
        }
        done += step;
    }
    return done;
}

}  // namespace quibra
