#include "core/binary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtEndian>
#include <cmath>
#include <cstring>

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

constexpr int kShortestMirror = 1;
constexpr int kLongestMirror = 1023;
constexpr int kLongestSquare = 1000;
constexpr int kSquareOffset = 32768;

}  // namespace

BinaryFile BinaryFile::OpenToRead(const QString& path) {
    const QByteArray name = NativePath(path);
    const auto opened = [&] { return open(name.constData(), O_RDONLY | O_CLOEXEC); };
    try {
        return BinaryFile(Descriptor(Checked(opened)));
    } catch (const RuntimeError& error) {
        // The usual text speaks of writing.
        if (error.Number() == kErrorPermission)
            throw RuntimeError(kErrorPermission, u"読み取りが許可されていません。"_s);
        throw;
    }
}

qint64 BinaryFile::Size() const {
    struct stat status;
    Checked([&] { return fstat(file_.Number(), &status); });
    return status.st_size;
}

size_t BinaryFile::Read(unsigned char* bytes, size_t size) {
    size_t done = 0;
    while (done < size) {
        const auto count =
            static_cast<size_t>(Checked([&] { return read(file_.Number(), bytes + done, size - done); }));
        if (count == 0) break;
        done += count;
    }
    return done;
}

void BinaryFile::Write(const unsigned char* bytes, size_t size) {
    for (size_t done = 0; done < size;)
        done += static_cast<size_t>(Checked([&] { return write(file_.Number(), bytes + done, size - done); }));
    unsynced_ += size;
    if (unsynced_ < kSyncPiece) return;
    Checked([&] { return fdatasync(file_.Number()); });
    unsynced_ = 0;
}

void BinaryFile::Sync() {
    Checked([&] { return fsync(file_.Number()); });
}

void BinaryFile::Close() {
    // The descriptor is gone whatever close says, so it is never tried twice.
    if (close(file_.Release()) != 0 && errno != EINTR) ThrowErrno();
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

}  // namespace quibra
