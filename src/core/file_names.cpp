#include "core/file_names.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <climits>
#include <cstdlib>

#include "core/runtime_error.h"
#include "core/system_call.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// False when nothing stands under the name, where a folder that is none is nothing too.
bool Status(const QString& path, struct stat& status) {
    if (path.contains(QChar::Null)) return false;
    if (stat(NativePath(path).constData(), &status) == 0) return true;
    if (errno == ENOENT || errno == ENOTDIR) return false;
    ThrowErrno();
}

}  // namespace

PathKind KindOfPath(const QString& path) {
    struct stat status;
    if (!Status(path, status)) return PathKind::Nothing;
    return S_ISREG(status.st_mode) ? PathKind::File : PathKind::Other;
}

QString ResolvedPath(const QString& path) {
    char resolved[PATH_MAX];
    return realpath(NativePath(path).constData(), resolved) ? QFile::decodeName(resolved) : path;
}

QString FolderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0) return u"."_s;
    return slash == 0 ? u"/"_s : path.left(slash);
}

QString NameBeside(const QString& path, const QString& suffix) {
    const qsizetype folder = path.lastIndexOf(u'/') + 1;
    QString name = path.mid(folder);
    while (QFile::encodeName(name + suffix).size() > NAME_MAX)
        name.chop(1);
    return path.left(folder) + name + suffix;
}

void RemoveFile(const QString& path) {
    if (unlink(NativePath(path).constData()) != 0 && errno != ENOENT) ThrowErrno();
}

void SyncFolder(const QString& path) {
    const QByteArray name = NativePath(FolderOf(path));
    const Descriptor folder(open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder may be written and not read; then its flush is left to the system.
    if (!folder.IsOpen() && errno == EACCES) return;
    if (!folder.IsOpen()) ThrowErrno();
    // Some file systems have no such flush for folders and say so with EINVAL: nothing more can be done there.
    if (fsync(folder.Number()) != 0 && errno != EINVAL) ThrowErrno();
}

std::optional<FileStamp> StampOf(const QString& path) {
    struct stat status;
    if (!Status(path, status) || !S_ISREG(status.st_mode)) return std::nullopt;
    return FileStamp{.device = status.st_dev,
                     .inode = status.st_ino,
                     .size = status.st_size,
                     .seconds = status.st_mtim.tv_sec,
                     .nanoseconds = status.st_mtim.tv_nsec};
}

bool IsUnderName(int descriptor, const QByteArray& name) {
    struct stat ours;
    struct stat named;
    return fstat(descriptor, &ours) == 0 && lstat(name.constData(), &named) == 0 && ours.st_dev == named.st_dev &&
           ours.st_ino == named.st_ino;
}

bool IsWriteProtected(const QString& path) {
    struct stat status;
    if (!Status(path, status)) return false;
    return (status.st_mode & S_IWUSR) == 0 || access(NativePath(path).constData(), W_OK) != 0;
}

}  // namespace quibra
