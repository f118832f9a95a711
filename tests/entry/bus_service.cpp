// A survey's own program as a service of the session's bus, in the way that docs/PLUGINS.md tells. It answers with what
// it has been given.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

class Service : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "jp.example.Quibra_Test")

  public Q_SLOTS:
    QDBusVariant QBExternProcessMain(int window, const QString& title, short question, short questionCount,
                                     short answer, const QStringList& labels, int id, const QList<short>& counts,
                                     const QList<short>& answers, const QStringList& essays) {
        if (title == u"leave"_s) std::exit(1);
        if (title == u"number"_s) return QDBusVariant(id);
        QStringList words = {title, labels.join(u'|'), essays.join(u'|')};
        for (int number : {window, int(question), int(questionCount), int(answer), id})
            words += QString::number(number);
        for (const QList<short>& list : {counts, answers})
            for (short number : list)
                words += QString::number(number);
        return QDBusVariant(words.join(u','));
    }
};

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Service service;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(u"/jp/example/Quibra_Test"_s, &service, QDBusConnection::ExportAllSlots) ||
        !bus.registerService(u"jp.example.Quibra-Test"_s))
        return 1;
    return QCoreApplication::exec();
}

#include "bus_service.moc"
