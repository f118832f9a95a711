#include "core/whole_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "core/file_names.h"
#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr mode_t kNewFilePermissions = 0666;
constexpr mode_t kWhileItGrows = 0600;
constexpr mode_t kPermissionBits = 07777;
constexpr int kMostNames = 100;
constexpr size_t kCopyPiece = size_t{1} << 20;

WholeFile* underWay = nullptr;

// True when the name is free again, or was before anybody could look.
bool RemoveLeftover(const QByteArray& name) {
    const Descriptor file(open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.IsOpen()) return errno == ENOENT;
    return flock(file.Number(), LOCK_EX | LOCK_NB) == 0 && IsUnderName(file.Number(), name) &&
           unlink(name.constData()) == 0;
}

// A new and locked file under that name; none when another program has one there.
Descriptor Create(const QByteArray& name, mode_t mode) {
    for (int i = 0; i < kMostNames; ++i) {
        Descriptor file(open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file.IsOpen()) {
            // Before it is locked, another program may have taken it for a leftover.
            const bool locked = flock(file.Number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
            if (locked && IsUnderName(file.Number(), name)) return file;
            continue;
        }
        // A new file misses nothing but its folder.
        if (errno == ENOENT) throw RuntimeError(kErrorPathNotFound);
        if (errno != EEXIST) ThrowErrno();
        if (!RemoveLeftover(name)) break;
    }
    return Descriptor();
}

// What can't be given to the same group is not given to another one.
void MakeLike(int file, const struct stat& like) {
    mode_t mode = like.st_mode & kPermissionBits;
    if (fchown(file, like.st_uid, like.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), like.st_gid) != 0)
        mode = (mode & ~mode_t{S_IRWXG}) | (mode & S_IRWXO) << 3;
    // A file system that knows no permissions may refuse.
    if (fchmod(file, mode) != 0 && errno != EPERM) ThrowErrno();
}

}  // namespace

WholeFile::WholeFile(const QString& path, mode_t mode) : path_(ResolvedPath(path)), name_(NativePath(path_)) {
    for (int i = 1; i <= kMostNames && !lock_.IsOpen(); ++i) {
        growing_ = NativePath(NameBeside(path_, i == 1 ? u"~new"_s : u"~new%1"_s.arg(i)));
        lock_ = Create(growing_, mode);
    }
    if (!lock_.IsOpen()) throw RuntimeError(kErrorPathAccess);
    grows_ = true;
    next_ = underWay;
    underWay = this;
}

WholeFile::WholeFile(const QString& path, const QString& like)
    : WholeFile(path, KindOfPath(like) == PathKind::File ? kWhileItGrows : kNewFilePermissions) {
    struct stat model;
    if (stat(NativePath(like).constData(), &model) == 0 && S_ISREG(model.st_mode)) MakeLike(lock_.Number(), model);
    // The lock belongs to both numbers, and lasts until the second one is closed.
    file_ = BinaryFile(Descriptor(Checked([&] { return fcntl(lock_.Number(), F_DUPFD_CLOEXEC, 0); })));
}

WholeFile::~WholeFile() {
    for (WholeFile** link = &underWay; *link; link = &(*link)->next_)
        if (*link == this) {
            *link = next_;
            break;
        }
    if (grows_) unlink(growing_.constData());
}

void WholeFile::Complete() {
    if (complete_) return;
    file_.Sync();
    file_.Close();
    complete_ = true;
}

void WholeFile::CheckItIsOurs() const {
    if (!IsUnderName(lock_.Number(), growing_)) throw RuntimeError(kErrorFileNotFound);
}

void WholeFile::Replace() {
    Complete();
    CheckItIsOurs();
    if (rename(growing_.constData(), name_.constData()) != 0) ThrowErrno();
    grows_ = false;
    inPlace_ = true;
    SyncFolder(path_);
}

void WholeFile::Appear() {
    Complete();
    CheckItIsOurs();
    if (link(growing_.constData(), name_.constData()) != 0) {
        if (errno == EEXIST) ThrowErrno();
        Replace();  // a file system without links
        return;
    }
    inPlace_ = true;
    Drop();
    SyncFolder(path_);
}

void WholeFile::Drop() {
    if (unlink(growing_.constData()) != 0 && errno != ENOENT) ThrowErrno();
    grows_ = false;
}

void WriteWholeFile(const QString& path, QByteArrayView bytes) {
    WholeFile file(path);
    file.Bytes().Write(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<size_t>(bytes.size()));
    file.Replace();
}

void MoveFile(const QString& from, const QString& to) {
    if (rename(NativePath(from).constData(), NativePath(to).constData()) == 0) return;
    if (errno != EXDEV) ThrowErrno();
    BinaryFile in = BinaryFile::OpenToRead(from);
    WholeFile out(to, from);
    std::vector<unsigned char> piece(kCopyPiece);
    while (const size_t size = in.Read(piece.data(), piece.size()))
        out.Bytes().Write(piece.data(), size);
    out.Replace();
    RemoveFile(from);
}

void RemoveGrowingFiles() noexcept {
    for (const WholeFile* file = underWay; file; file = file->next_)
        if (file->grows_) unlink(file->growing_.constData());
}

}  // namespace quibra
