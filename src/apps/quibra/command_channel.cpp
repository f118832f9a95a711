#include "apps/quibra/command_channel.h"

#include <QDBusConnection>
#include <QTimer>

#include "core/session_bus.h"

using namespace Qt::StringLiterals;

namespace quibra {

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
