// What stands under a name in the file system, and which version of it.
#pragma once

#include <sys/types.h>

#include <QString>
#include <optional>

namespace quibra {

enum class PathKind { Nothing, File, Other };
PathKind KindOfPath(const QString& path);
// The path behind symbolic links; the path itself when nothing stands there.
QString ResolvedPath(const QString& path);
// The folder of a path, without a separator behind it unless it is the root; "." for a bare name.
QString FolderOf(const QString& path);
// `path` with `suffix` behind it, cut where a name of the file system would become too long.
QString NameBeside(const QString& path, const QString& suffix);
// A file that is not there counts as removed.
void RemoveFile(const QString& path);
// Returns once the names in the folder of `path` are on the disk.
void SyncFolder(const QString& path);

// Tells one version of a file from all others: another file under its name, or the same one written again.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    qint64 size = 0;
    qint64 seconds = 0;
    qint64 nanoseconds = 0;
    bool operator==(const FileStamp&) const = default;
};
// Nothing where no plain file stands.
std::optional<FileStamp> StampOf(const QString& path);

// Whether that open file is still the one that stands under the name.
bool IsUnderName(int descriptor, const QByteArray& name);

// True for a file whose owner may not write it, whoever asks, or that this user may not.
bool IsWriteProtected(const QString& path);

}  // namespace quibra
