// The old and the new version of a survey file while it is saved. The new one grows beside the old one, and only when
// it is complete and on the disk are the names exchanged: the old version gets a second name, the new one takes the
// survey's in one step, and then the old one becomes the backup. Whenever the machine stops a whole survey stands under
// the path, and a save that fails leaves the backup of before.
//
// On a file system without second names the old version is moved aside first. A program that is killed just then leaves
// it, and the new one, under the names that LeftVersions gives.
#pragma once

#include <QStringList>

#include "core/whole_file.h"

namespace quibra {

// "data.2001/a.qb" has its first dot in the folder's name, and so its backup beside that folder.
QString BackupName(const QString& path);
// Where a broken save may have left a version of the survey, the newest first.
QStringList LeftVersions(const QString& path);

class SurveyExchange {
  public:
    // REQUIRES: nothing or a plain file under `path`, and its lock held by this program.
    explicit SurveyExchange(const QString& path);

    BinaryFile& Bytes() { return whole_.Bytes(); }
    // Puts the new version under the path, through a symbolic link, and the old one under the backup's name.
    void Commit();
    // Drops the new version and puts the old one back where it was. A file that is its own backup has no way back, but
    // its new version is complete by then.
    void TakeBack();

  private:
    void KeepOld();

    const QString path_;
    const QString kept_;
    const QString backup_;
    const bool replaces_;
    WholeFile whole_;
    bool keeps_ = false;
    bool movedOld_ = false;
};

}  // namespace quibra
