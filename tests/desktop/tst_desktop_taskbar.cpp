#include <desktop/window/TaskbarProgress.h>

#include <QDBusConnection>
#include <QGuiApplication>
#include <QProcess>
#include <QTest>
#include <QVariantMap>

using desktop::TaskbarProgress;

constexpr int WaitMs = 30'000;

// What task bars of Linux are told, on a bus of the test.
class TestDesktopTaskbar : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void take(const QString &program, const QVariantMap &properties)
    {
        m_program = program;
        m_properties = properties;
        ++m_count;
    }

private Q_SLOTS:
    void initTestCase();
    void progressIsTold();

private:
    QProcess m_bus;
    QString m_program;
    QVariantMap m_properties;
    int m_count = 0;
};

void TestDesktopTaskbar::initTestCase()
{
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address=1")});
    QVERIFY(m_bus.waitForStarted());
    while (!m_bus.canReadLine())
        QVERIFY(m_bus.waitForReadyRead(WaitMs));
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
}

void TestDesktopTaskbar::progressIsTold()
{
    QDBusConnection watcher = QDBusConnection::connectToBus(
        qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("watcher"));
    QVERIFY(watcher.isConnected());
    QVERIFY(watcher.connect(QString(), QString(),
                            QStringLiteral("com.canonical.Unity.LauncherEntry"),
                            QStringLiteral("Update"), this, SLOT(take(QString, QVariantMap))));
    QGuiApplication::setDesktopFileName(QStringLiteral("vell-desktop"));
    std::unique_ptr<TaskbarProgress> progress = TaskbarProgress::ofSystem(nullptr);
    progress->show(40);
    QTRY_COMPARE_WITH_TIMEOUT(m_count, 1, WaitMs);
    QCOMPARE(m_program, QStringLiteral("application://vell-desktop.desktop"));
    QCOMPARE(m_properties.value(QStringLiteral("progress")).toDouble(), 0.4);
    QVERIFY(m_properties.value(QStringLiteral("progress-visible")).toBool());
    progress->show(40); // nothing new
    progress->show(-1);
    QTRY_COMPARE_WITH_TIMEOUT(m_count, 2, WaitMs);
    QVERIFY(!m_properties.value(QStringLiteral("progress-visible")).toBool());
    progress.reset(); // the next program does not find it there
    QTRY_COMPARE_WITH_TIMEOUT(m_count, 3, WaitMs);
    m_bus.terminate();
    QVERIFY(m_bus.waitForFinished(WaitMs));
}

QTEST_MAIN(TestDesktopTaskbar)
#include "tst_desktop_taskbar.moc"
