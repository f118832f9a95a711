// A journal as a file that grows: what is appended is on the disk a moment later, while the program has long gone on. A
// thread of its own writes and waits for the disk; it sees bytes alone.
#pragma once

#include <QByteArray>
#include <QString>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "session/journal_format.h"

namespace quibra {

class JournalFile {
  public:
    // Makes the file anew, for this user's eyes alone, and locks it for as long as the process lives. A journal without
    // a lock is one whose program has ended. RuntimeError when that fails.
    explicit JournalFile(const QString& path);
    // Writes what is still to be written; the file stays.
    ~JournalFile();
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    void Append(QByteArray content);
    // A sheet is typed key by key: each takes the place of the one before that is not written yet, a few times a
    // second.
    void AppendDraft(QByteArray content);
    // Returns once all is on the disk.
    void Flush();
    // Ends the writing and deletes the file.
    void Remove();

    // What keeps the file from being written, empty while nothing does. It is tried again with each change.
    QString Failure() const;

  private:
    void Write();
    QString Put(const std::vector<QByteArray>& contents);  // empty, or why not
    void Stop();

    QString path_;
    int file_ = -1;
    JournalFramer framer_;  // of the writing thread, like the next one
    qint64 whole_ = 0;      // bytes that are whole and on the disk

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<QByteArray> waiting_;
    std::optional<QByteArray> draft_;
    bool writing_ = false;
    bool flushes_ = false;
    bool stops_ = false;
    QString failure_;
    std::thread writer_;
};

// The bytes of a journal whose program has ended; nothing of one that is in use or can't be read.
std::optional<QByteArray> ReadLeftJournal(const QString& path);

}  // namespace quibra
