// A plugin that Qt loads into the installed program, which cannot be looked into otherwise where there is no display.
// It waits for the main window, presses F1, writes what it sees to standard output as one JSON object, and closes both.
#include <QApplication>
#include <QGenericPlugin>
#include <QIcon>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QMimeDatabase>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

class Probe : public QObject {
  public:
    Probe() { startTimer(20); }

  protected:
    void timerEvent(QTimerEvent*) override {
        QWidget* main = Window(u"frmMain"_s);
        if (QWidget* help = Window(u"frmHelp"_s)) {
            SeeHelp(help);
            help->close();
            main->close();
        } else if (main && !asked_) {
            asked_ = true;
            SeeMain(main);
            QTest::keyClick(main, Qt::Key_F1);
        }
    }

  private:
    static QWidget* Window(const QString& name) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == name && window->isVisible()) return window;
        return nullptr;
    }

    void SeeMain(const QWidget* main) {
        const QIcon icon = QApplication::windowIcon();
        seen_[u"title"_s] = main->windowTitle();
        seen_[u"figures"_s] = main->findChild<QLabel*>(u"lblFigures"_s)->text();
        seen_[u"icon"_s] = icon.pixmap(32).toImage().pixelColor(16, 3).name();
        seen_[u"cancel"_s] = QCoreApplication::translate("QPlatformTheme", "Cancel");
        seen_[u"desktop file"_s] = QGuiApplication::desktopFileName();
        QJsonObject types;
        const QMimeDatabase database;
        for (const QString& path : qEnvironmentVariable("QUIBRA_PROBE_FILES").split(u':'))
            types[path] = database.mimeTypeForFile(path, QMimeDatabase::MatchContent).name() + u' ' +
                          database.mimeTypeForFile(path, QMimeDatabase::MatchExtension).comment();
        seen_[u"types"_s] = types;
    }

    void SeeHelp(const QWidget* help) {
        seen_[u"help"_s] = help->findChild<QTextBrowser*>(u"txtPage"_s)->toPlainText();
        seen_[u"pages"_s] = help->findChild<QListWidget*>(u"lstPages"_s)->count();
        std::puts(QJsonDocument(seen_).toJson().constData());
    }

    bool asked_ = false;
    QJsonObject seen_;
};

class ProbePlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

  public:
    QObject* create(const QString&, const QString&) override { return new Probe; }
};

}  // namespace

#include "probe.moc"
