#include "core/binary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QtEndian>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/code_page.h"
#include "core/numbers.h"
#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Large enough that system calls cost nothing beside the bytes, small enough to stay in the processor's cache.
constexpr size_t kChunkSize = size_t{1} << 20;

// Bytes go to the disk in pieces of this size while more are written: one flush of them all at the end would stand
// still for as long as a slow disk takes.
constexpr size_t kSyncPiece = size_t{16} << 20;

constexpr unsigned kNewFilePermissions = 0666;

constexpr int kShortestMirror = 1;
constexpr int kLongestMirror = 1023;
constexpr int kLongestSquare = 1000;
constexpr int kSquareOffset = 32768;

[[noreturn]] void ThrowErrno() {
    throw RuntimeError::FromErrno(errno);
}

// Runs a system call again for as long as signals interrupt it.
template <typename Call>
auto Checked(Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0) return result;
        if (errno != EINTR) ThrowErrno();
    }
}

QByteArray NativePath(const QString& path) {
    // A name cut at a zero byte would be that of another file.
    if (path.contains(QChar::Null)) throw RuntimeError(kErrorPathAccess);
    return QFile::encodeName(path);
}

// False when nothing stands under the name, where a folder that is none is nothing too.
bool Status(const QString& path, struct stat& status) {
    if (path.contains(QChar::Null)) return false;
    if (stat(NativePath(path).constData(), &status) == 0) return true;
    if (errno == ENOENT || errno == ENOTDIR) return false;
    ThrowErrno();
}

QString FolderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0) return u"."_s;
    return slash == 0 ? u"/"_s : path.left(slash);
}

void CopyFile(const QString& from, const QString& to) {
    BinaryFile in = BinaryFile::OpenToRead(from);
    BinaryFile out = BinaryFile::Create(to, PermissionsOf(from));
    std::vector<unsigned char> chunk(kChunkSize);
    while (const size_t size = in.Read(chunk.data(), chunk.size()))
        out.Write(chunk.data(), size);
    out.Sync();
    out.Close();
}

}  // namespace

BinaryFile BinaryFile::OpenToRead(const QString& path) {
    const QByteArray name = NativePath(path);
    return BinaryFile(Checked([&] { return open(name.constData(), O_RDONLY | O_CLOEXEC); }));
}

BinaryFile BinaryFile::Create(const QString& path, std::optional<unsigned> permissions) {
    RemoveFile(path);
    const QByteArray name = NativePath(path);
    const unsigned mode = permissions.value_or(kNewFilePermissions);
    const int descriptor = open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    // A new file misses nothing but its folder.
    if (descriptor < 0 && errno == ENOENT) throw RuntimeError(kErrorPathNotFound);
    if (descriptor < 0) ThrowErrno();
    BinaryFile file(descriptor);
    // Given permissions are those of an older version of the file: the umask has no part in them. A file system that
    // knows no permissions may refuse.
    if (permissions && fchmod(file.descriptor_, mode) != 0 && errno != EPERM) ThrowErrno();
    return file;
}

BinaryFile::BinaryFile(BinaryFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), unsynced_(other.unsynced_) {}

BinaryFile::~BinaryFile() {
    if (descriptor_ >= 0) close(descriptor_);
}

qint64 BinaryFile::Size() const {
    struct stat status;
    Checked([&] { return fstat(descriptor_, &status); });
    return status.st_size;
}

size_t BinaryFile::Read(unsigned char* bytes, size_t size) {
    size_t done = 0;
    while (done < size) {
        const auto count = static_cast<size_t>(Checked([&] { return read(descriptor_, bytes + done, size - done); }));
        if (count == 0) break;
        done += count;
    }
    return done;
}

void BinaryFile::Write(const unsigned char* bytes, size_t size) {
    for (size_t done = 0; done < size;)
        done += static_cast<size_t>(Checked([&] { return write(descriptor_, bytes + done, size - done); }));
    unsynced_ += size;
    if (unsynced_ < kSyncPiece) return;
    Checked([&] { return fdatasync(descriptor_); });
    unsynced_ = 0;
}

void BinaryFile::Sync() {
    Checked([&] { return fsync(descriptor_); });
}

void BinaryFile::Close() {
    // The descriptor is gone whatever close says, so it is never tried twice.
    if (close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) ThrowErrno();
}

PathKind KindOfPath(const QString& path) {
    struct stat status;
    if (!Status(path, status)) return PathKind::Nothing;
    return S_ISREG(status.st_mode) ? PathKind::File : PathKind::Other;
}

unsigned PermissionsOf(const QString& path) {
    struct stat status;
    if (!Status(path, status)) throw RuntimeError(kErrorFileNotFound);
    return status.st_mode & 07777;
}

QString ResolvedPath(const QString& path) {
    char resolved[PATH_MAX];
    return realpath(NativePath(path).constData(), resolved) ? QFile::decodeName(resolved) : path;
}

void MoveFile(const QString& from, const QString& to) {
    if (rename(NativePath(from).constData(), NativePath(to).constData()) == 0) return;
    if (errno != EXDEV) ThrowErrno();
    const QString copy = to + u"~copy"_s;
    CopyFile(from, copy);
    MoveFile(copy, to);
    SyncFolder(to);
    RemoveFile(from);
}

void RemoveFile(const QString& path) {
    if (unlink(NativePath(path).constData()) != 0 && errno != ENOENT) ThrowErrno();
}

void SyncFolder(const QString& path) {
    const QByteArray name = NativePath(FolderOf(path));
    const int folder = open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    // A folder may be written and not read; then its flush is left to the system.
    if (folder < 0 && errno == EACCES) return;
    if (folder < 0) ThrowErrno();
    const int failed = fsync(folder) == 0 ? 0 : errno;
    close(folder);
    // Some file systems have no such flush for folders and say so with EINVAL: nothing more can be done there.
    if (failed != 0 && failed != EINVAL) throw RuntimeError::FromErrno(failed);
}

ByteReader::ByteReader(QByteArrayView bytes)
    : next_(reinterpret_cast<const unsigned char*>(bytes.data())), end_(next_ + bytes.size()) {}

ByteReader::ByteReader(BinaryFile& file)
    : file_(&file),
      unread_(file.Size()),
      chunk_(static_cast<size_t>(std::min<qint64>(unread_, static_cast<qint64>(kChunkSize)))) {
    next_ = end_ = chunk_.data();
}

void ByteReader::Refill(size_t size) {
    Q_ASSERT(size <= kLongestTake);
    if (static_cast<qint64>(size) > Remaining()) throw RuntimeError(kErrorPastEnd);
    const auto left = static_cast<size_t>(end_ - next_);
    std::memmove(chunk_.data(), next_, left);
    const auto wanted = static_cast<size_t>(std::min<qint64>(unread_, static_cast<qint64>(chunk_.size() - left)));
    const size_t got = file_->Read(chunk_.data() + left, wanted);
    next_ = chunk_.data();
    end_ = next_ + left + got;
    // A file that became shorter since it was opened ends here.
    unread_ = got < wanted ? 0 : unread_ - static_cast<qint64>(got);
    if (left + got < size) throw RuntimeError(kErrorPastEnd);
}

qint16 ByteReader::Int16() {
    return qFromLittleEndian<qint16>(Take(sizeof(qint16)));
}

qint32 ByteReader::Int32() {
    return qFromLittleEndian<qint32>(Take(sizeof(qint32)));
}

ByteWriter::ByteWriter(QByteArray& bytes) : bytes_(&bytes), chunk_(kLongestTake) {}

ByteWriter::ByteWriter(BinaryFile& file) : file_(&file), chunk_(kChunkSize) {}

void ByteWriter::Int16(qint16 value) {
    qToLittleEndian(value, Add(sizeof value));
}

void ByteWriter::Int32(qint32 value) {
    qToLittleEndian(value, Add(sizeof value));
}

void ByteWriter::Flush() {
    if (file_)
        file_->Write(chunk_.data(), used_);
    else
        bytes_->append(reinterpret_cast<const char*>(chunk_.data()), static_cast<qsizetype>(used_));
    used_ = 0;
}

QString ReadDoubleLen(ByteReader& in) {
    in.Int16();  // only the second length counts
    const qint16 length = in.Int16();
    if (length <= 0) return QString();
    return DecodeCodePage(QByteArrayView(in.Take(static_cast<size_t>(length)), length));
}

void WriteDoubleLen(ByteWriter& out, const QString& text) {
    const QByteArray bytes = EncodeCodePage(text);
    const qint16 length = CheckedInt16(bytes.size());
    out.Int16(length);
    out.Int16(length);
    std::copy(bytes.begin(), bytes.end(), out.Add(static_cast<size_t>(length)));
}

QString ReadMirrorStr(ByteReader& in) {
    const qint16 length = in.Int16();
    if (length < kShortestMirror || length > kLongestMirror) return QString();
    const unsigned char* mirrored = in.Take(static_cast<size_t>(length));
    QByteArray bytes(length, Qt::Uninitialized);
    for (int i = 0; i < length; ++i)
        bytes[length - 1 - i] = static_cast<char>(~mirrored[i]);
    return DecodeCodePage(bytes);
}

void WriteMirrorStr(ByteWriter& out, const QString& text) {
    const QByteArray bytes = EncodeCodePage(text);
    const qint16 length = CheckedInt16(bytes.size());
    out.Int16(length);
    unsigned char* mirrored = out.Add(static_cast<size_t>(length));
    for (int i = 0; i < length; ++i)
        mirrored[i] = static_cast<unsigned char>(~bytes[length - 1 - i]);
}

QString ReadSquareStr(ByteReader& in) {
    const qint16 length = in.Int16();
    if (length > kLongestSquare) return QString();
    QString text;
    for (int i = 0; i < length; ++i)
        text.prepend(CharacterOfCode(RoundToInt16(std::sqrt(in.Int16() + kSquareOffset))));
    return text;
}

void WriteSquareStr(ByteWriter& out, const QString& text) {
    if (text.size() > kLongestSquare) throw RuntimeError(kErrorOverflow);
    out.Int16(static_cast<qint16>(text.size()));
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        const qint64 code = CharacterCode(text[i]);
        out.Int16(CheckedInt16(code * code - kSquareOffset));
    }
}

void WriteWholeFile(const QString& path, QByteArrayView bytes) {
    BinaryFile file = BinaryFile::Create(path);
    file.Write(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<size_t>(bytes.size()));
    file.Close();
}

}  // namespace quibra
