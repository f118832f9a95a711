#include "core/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QDeadlineTimer>
#include <QThread>

#include "core/file_names.h"
#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kPatience = 3000;  // milliseconds
constexpr unsigned long kPause = 10;

}  // namespace

FileLock::FileLock(const QString& path, const std::function<void()>& whileWaiting) : path_(path) {
    const QByteArray name = NativePath(ResolvedPath(path));
    const QDeadlineTimer patience(kPatience);
    while (!Try(name)) {
        if (patience.hasExpired())
            throw RuntimeError(
                kErrorPermission,
                u"他のプログラムがこのファイルに書き込んでいます。しばらくしてからやり直してください。"_s);
        whileWaiting();
        QThread::msleep(kPause);
    }
}

bool FileLock::Try(const QByteArray& name) {
    file_ = Descriptor(open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file_.IsOpen()) return true;  // the load or save itself says why
    if (flock(file_.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    return IsUnderName(file_.Number(), name);
}

}  // namespace quibra
