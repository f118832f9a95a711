#include "session/survey_exchange.h"

#include <unistd.h>

#include <csignal>

#include "core/file_names.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kKeptSuffix = u"~old"_s;
const QString kGrowingSuffix = u"~new"_s;

// Ctrl+C and its like wait while the names change, which takes no time that anybody would notice.
class SignalsHeld {
  public:
    SignalsHeld() {
        sigset_t ends;
        sigemptyset(&ends);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
            sigaddset(&ends, signal);
        pthread_sigmask(SIG_BLOCK, &ends, &before_);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

  private:
    sigset_t before_;
};

}  // namespace

QString BackupName(const QString& path) {
    return path.left(path.indexOf(u'.') + 1) + u"qb~"_s;
}

QStringList LeftVersions(const QString& path) {
    return {NameBeside(path, kGrowingSuffix), NameBeside(path, kKeptSuffix), BackupName(path)};
}

SurveyExchange::SurveyExchange(const QString& path)
    : path_(ResolvedPath(path)),
      kept_(NameBeside(path_, kKeptSuffix)),
      backup_(BackupName(path)),
      replaces_(KindOfPath(path_) == PathKind::File),
      whole_(path_) {}

void SurveyExchange::KeepOld() {
    RemoveFile(kept_);  // left by a save that was killed
    const QByteArray from = NativePath(path_);
    const QByteArray to = NativePath(kept_);
    if (link(from.constData(), to.constData()) != 0) {
        if (rename(from.constData(), to.constData()) != 0) ThrowErrno();
        movedOld_ = true;
    }
    keeps_ = true;
}

void SurveyExchange::Commit() {
    whole_.Complete();
    const SignalsHeld held;
    if (!replaces_) {
        whole_.Appear();
        return;
    }
    if (ResolvedPath(backup_) == path_) {
        whole_.Replace();
        return;
    }
    KeepOld();
    whole_.Replace();
    MoveFile(kept_, backup_);
    keeps_ = false;
}

void SurveyExchange::TakeBack() {
    const SignalsHeld held;
    if (!whole_.IsInPlace()) whole_.Drop();
    if (keeps_) {
        // Two names of one file are not made one by a rename.
        if (whole_.IsInPlace() || movedOld_)
            MoveFile(kept_, path_);
        else
            RemoveFile(kept_);
        keeps_ = false;
        SyncFolder(path_);
    } else if (whole_.IsInPlace() && !replaces_) {
        RemoveFile(path_);
    }
}

}  // namespace quibra
