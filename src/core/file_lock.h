// An advisory lock on the file behind a name: programs that write a survey hold it while they change it, so that none
// of them replaces what another has just saved. Released with the object or the process. A save puts another file under
// the name; whoever has waited for the old one then waits for the new one.
#pragma once

#include <QString>
#include <functional>

#include "core/system_call.h"

namespace quibra {

class FileLock {
  public:
    // Waits a few seconds for another program to finish, calling `whileWaiting` often. RuntimeError 70 when it does
    // not. Where no file stands, or the file system knows no locks, there is nothing to wait for.
    FileLock(const QString& path, const std::function<void()>& whileWaiting);

    const QString& Path() const { return path_; }

  private:
    bool Try(const QByteArray& name);

    QString path_;
    Descriptor file_;
};

}  // namespace quibra
