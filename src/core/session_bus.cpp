#include "core/session_bus.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace quibra {

bool HasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
}

}  // namespace quibra
