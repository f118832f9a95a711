// The channel for other programs: on the session's message bus the name "jp.quibra.Quibra" has the object "/Quibra"
// with one method, Command(text), of the interface "jp.quibra.Command". Without a bus there is no channel.
#pragma once

#include <QObject>
#include <functional>

namespace quibra {

class CommandChannel : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "jp.quibra.Command")

  public:
    // `run` gets each command, from the event loop: the caller on the bus does not wait for what it opens.
    explicit CommandChannel(std::function<void(const QString& command)> run, QObject* parent = nullptr);

    // False without a bus or when another program has the name.
    bool Open();

  public Q_SLOTS:
    void Command(const QString& command);

  private:
    std::function<void(const QString&)> run_;
};

}  // namespace quibra
