#include "session/journal_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <chrono>

#include "core/binary_file.h"
#include "core/file_names.h"
#include "core/runtime_error.h"

namespace quibra {

namespace {

constexpr std::chrono::milliseconds kBetweenDrafts(300);

bool Lock(int file) {
    return flock(file, LOCK_EX | LOCK_NB) == 0;
}

}  // namespace

JournalFile::JournalFile(const QString& path) : path_(path) {
    file_ = open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file_ < 0) throw RuntimeError::FromErrno(errno);
    // On a file system without locks the file counts as left behind by others that look for one meanwhile.
    Lock(file_);
    writer_ = std::thread([this] { Write(); });
}

JournalFile::~JournalFile() {
    Stop();
    close(file_);
}

void JournalFile::Append(QByteArray content) {
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(content));
    }
    changed_.notify_all();
}

void JournalFile::AppendDraft(QByteArray content) {
    {
        const std::lock_guard lock(mutex_);
        draft_ = std::move(content);
    }
    changed_.notify_all();
}

void JournalFile::Flush() {
    std::unique_lock lock(mutex_);
    flushes_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !failure_.isEmpty() || (waiting_.empty() && !draft_ && !writing_); });
    flushes_ = false;
}

void JournalFile::Remove() {
    {
        const std::lock_guard lock(mutex_);
        waiting_.clear();
        draft_.reset();
    }
    Stop();
    unlink(QFile::encodeName(path_).constData());
}

QString JournalFile::Failure() const {
    const std::lock_guard lock(mutex_);
    return failure_;
}

void JournalFile::Stop() {
    {
        const std::lock_guard lock(mutex_);
        stops_ = true;
    }
    changed_.notify_all();
    if (writer_.joinable()) writer_.join();
}

void JournalFile::Write() {
    using Clock = std::chrono::steady_clock;
    auto nextDraft = Clock::now();
    std::unique_lock lock(mutex_);
    for (;;) {
        const bool draftIsDue = draft_ && (flushes_ || stops_ || Clock::now() >= nextDraft);
        if (waiting_.empty() && !draftIsDue) {
            if (stops_) return;
            if (draft_)
                changed_.wait_until(lock, nextDraft);
            else
                changed_.wait(lock);
            continue;
        }
        std::vector<QByteArray> contents = std::exchange(waiting_, {});
        // Behind the records that were made before it.
        if (draft_) {
            contents.push_back(*std::exchange(draft_, std::nullopt));
            nextDraft = Clock::now() + kBetweenDrafts;
        }
        writing_ = true;
        lock.unlock();
        const QString failure = Put(contents);
        lock.lock();
        writing_ = false;
        failure_ = failure;
        changed_.notify_all();
        if (failure.isEmpty()) continue;
        // Tried again with the next change.
        waiting_.insert(waiting_.begin(), contents.begin(), contents.end());
        if (stops_) return;
        changed_.wait(lock);
    }
}

QString JournalFile::Put(const std::vector<QByteArray>& contents) {
    const JournalFramer before = framer_;
    try {
        QByteArray bytes = whole_ > 0 ? QByteArray() : kJournalMagic.toByteArray();
        for (const QByteArray& content : contents)
            bytes += framer_.Frame(content);
        for (qsizetype done = 0; done < bytes.size();) {
            const ssize_t written = write(file_, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) throw RuntimeError::FromErrno(errno);
            done += written;
        }
        if (fdatasync(file_) != 0) throw RuntimeError::FromErrno(errno);
        if (whole_ == 0) SyncFolder(path_);
        whole_ += bytes.size();
        return QString();
    } catch (const RuntimeError& error) {
        // No piece of an entry stays in front of those to come.
        framer_ = before;
        const bool cut = ftruncate(file_, whole_) == 0 && lseek(file_, whole_, SEEK_SET) == whole_;
        return cut ? error.Text() : RuntimeError(kErrorDeviceIo).Text();
    }
}

std::optional<QByteArray> ReadLeftJournal(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !Lock(file.handle())) return std::nullopt;
    return file.readAll();
}

}  // namespace quibra
