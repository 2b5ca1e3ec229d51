#include <desktop/window/TaskbarProgress.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QVariantMap>

namespace desktop {

namespace {

//! Uses the D-Bus signal for docks and task bars on Linux.
class LauncherEntry : public TaskbarProgress
{
public:
    ~LauncherEntry() override { send(-1); }

private:
    void paint(int percent) override { send(percent); }

    static void send(int percent)
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            return;
        QDBusMessage update = QDBusMessage::createSignal(
            QStringLiteral("/com/canonical/unity/launcherentry/1"),
            QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
        update << QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName())
               << QVariantMap{{QStringLiteral("progress"), percent / 100.0},
                              {QStringLiteral("progress-visible"), percent >= 0}};
        bus.send(update);
    }
};

} // namespace

std::unique_ptr<TaskbarProgress> TaskbarProgress::ofSystem(QWidget *)
{
    return std::make_unique<LauncherEntry>();
}

} // namespace desktop
