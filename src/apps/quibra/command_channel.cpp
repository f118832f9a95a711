#include "apps/quibra/command_channel.h"

#include <QDBusConnection>
#include <QFileInfo>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Asking for a bus where there is none would start one.
bool HasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
}

}  // namespace

CommandChannel::CommandChannel(std::function<void(const QString&)> run, QObject* parent)
    : QObject(parent), run_(std::move(run)) {}

bool CommandChannel::Open() {
    if (!HasSessionBus()) return false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.registerObject(u"/Quibra"_s, this, QDBusConnection::ExportAllSlots) &&
           bus.registerService(u"jp.quibra.Quibra"_s);
}

void CommandChannel::Command(const QString& command) {
    QTimer::singleShot(0, this, [this, command] { run_(command); });
}

}  // namespace quibra
