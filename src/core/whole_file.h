// A file that comes into being whole: it grows under a temporary name beside the one it is to have, and takes that name
// in one step when all its bytes are on the disk. Until then what stood there stays as it was, and a write that fails
// or is given up leaves nothing behind.
//
// The temporary name is made for this file alone and locked while it is written. What a killed program has left under
// such a name is not locked any more and goes when the next one needs the name.
#pragma once

#include <QByteArrayView>
#include <QString>

#include <sys/types.h>

#include "core/binary_file.h"
#include "core/system_call.h"

namespace quibra {

class WholeFile {
  public:
    // Permissions, group and, where the system allows it, owner are those of the file `like`, where there is one.
    explicit WholeFile(const QString& path) : WholeFile(path, path) {}
    WholeFile(const QString& path, const QString& like);
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;
    // Drops what has not been put in place.
    ~WholeFile();

    BinaryFile& Bytes() { return file_; }
    // Returns once all bytes are on the disk. Nothing more can be written.
    void Complete();
    // Completes, and replaces what stands under the path. It may fail behind that; IsInPlace() tells.
    void Replace();
    // The same where nothing stands; RuntimeError 58 when a file has come up there since.
    void Appear();
    // Removes the temporary file and says when that fails.
    void Drop();

    bool IsInPlace() const { return inPlace_; }

  private:
    // The file under its temporary name, not yet open to be written.
    WholeFile(const QString& path, mode_t mode);
    void CheckItIsOurs() const;

    const QString path_;
    QByteArray name_;
    QByteArray growing_;
    Descriptor lock_;
    BinaryFile file_{Descriptor()};
    bool complete_ = false;
    bool grows_ = false;  // the temporary name stands
    bool inPlace_ = false;
    WholeFile* next_ = nullptr;  // the list of all that are under way

    friend void RemoveGrowingFiles() noexcept;
};

// Writes `bytes` as the file at `path`.
void WriteWholeFile(const QString& path, QByteArrayView bytes);

// Replaces `to` in one step. Across file systems the bytes are copied and flushed before `from` goes.
void MoveFile(const QString& from, const QString& to);

// Removes the temporary files of all that is being written. Safe in a signal handler that then ends the process.
void RemoveGrowingFiles() noexcept;

}  // namespace quibra
