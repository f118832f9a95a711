// Files as bytes: opening, reading, writing, flushing to the disk, and the string forms of the survey and page files. A
// failed call is a RuntimeError with the number and text of its errno. Qt's file classes hide the exact steps (when
// data reach the disk, what a rename replaces), so the system calls are used as they are. Files are made by
// core/whole_file.h.
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

#include "core/system_call.h"

namespace quibra {

// An open file, closed by its destructor.
class BinaryFile {
  public:
    static BinaryFile OpenToRead(const QString& path);
    explicit BinaryFile(Descriptor file) : file_(std::move(file)) {}

    qint64 Size() const;
    // Up to `size` bytes; fewer only at the end of the file.
    size_t Read(unsigned char* bytes, size_t size);
    void Write(const unsigned char* bytes, size_t size);
    // Returns once the data are on the disk.
    void Sync();
    // Closes and reports what the system has put off until then.
    void Close();

  private:
    Descriptor file_;
    size_t unsynced_ = 0;  // bytes written since they were last sent to the disk
};

// Reads bytes in sequence, from memory or from a file that is taken in chunks, so that a large file is never in memory
// twice. Integers are little-endian. Reading past the end is run-time error 62. The memory or file must outlive it.
class ByteReader {
  public:
    explicit ByteReader(QByteArrayView bytes);
    explicit ByteReader(BinaryFile& file);
    ByteReader(const ByteReader&) = delete;
    ByteReader& operator=(const ByteReader&) = delete;

    // Bytes not yet read.
    qint64 Remaining() const { return (end_ - next_) + unread_; }
    bool AtEnd() const { return Remaining() == 0; }
    // The next `size` bytes, contiguous, until the next call. At most kLongestTake at a time.
    const unsigned char* Take(size_t size) {
        if (size > static_cast<size_t>(end_ - next_)) Refill(size);
        const unsigned char* taken = next_;
        next_ += size;
        return taken;
    }
    qint16 Int16();
    qint32 Int32();

    static constexpr size_t kLongestTake = size_t{1} << 16;

  private:
    void Refill(size_t size);

    const unsigned char* next_;
    const unsigned char* end_;
    BinaryFile* file_ = nullptr;
    qint64 unread_ = 0;  // bytes of the file behind the chunk in memory
    std::vector<unsigned char> chunk_;
};

// Writes bytes in sequence, to a file or appending to a byte array, in large chunks. Flush must be called at the end.
class ByteWriter {
  public:
    explicit ByteWriter(QByteArray& bytes);
    explicit ByteWriter(BinaryFile& file);
    ByteWriter(const ByteWriter&) = delete;
    ByteWriter& operator=(const ByteWriter&) = delete;

    // Room for the next `size` bytes, which the caller fills before the next call. At most kLongestTake at a time.
    unsigned char* Add(size_t size) {
        if (size > chunk_.size() - used_) Flush();
        unsigned char* place = chunk_.data() + used_;
        used_ += size;
        return place;
    }
    void Int16(qint16 value);
    void Int32(qint32 value);
    void Flush();

    static constexpr size_t kLongestTake = ByteReader::kLongestTake;

  private:
    BinaryFile* file_ = nullptr;
    QByteArray* bytes_ = nullptr;
    std::vector<unsigned char> chunk_;
    size_t used_ = 0;
};

// DoubleLen: the length in bytes twice, then that many bytes of code page 932; no bytes for a length of 0 or less. A
// text of more than 32767 bytes is run-time error 6.
QString ReadDoubleLen(ByteReader& in);
void WriteDoubleLen(ByteWriter& out, const QString& text);
// MirrorStr: the length, then the complements of the bytes from the last to the first. A length outside 1 to 1023 is an
// empty text with no bytes behind it.
QString ReadMirrorStr(ByteReader& in);
void WriteMirrorStr(ByteWriter& out, const QString& text);
// SquareStr: the number of characters, then for each from the last to the first the square of its code minus 32768. A
// number above 1000 is an empty text with nothing behind it. A longer text, or a character with a code above 255, is
// run-time error 6.
QString ReadSquareStr(ByteReader& in);
void WriteSquareStr(ByteWriter& out, const QString& text);

}  // namespace quibra
