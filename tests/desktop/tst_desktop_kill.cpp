#include <support/ServiceProcess.h>

#include <desktop/actions/Actions.h>
#include <desktop/app/Desktop.h>
#include <desktop/lists/DocumentPane.h>
#include <desktop/window/MainWindow.h>
#include <desktop/window/MessageBar.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace desktop;

constexpr int WaitMs = 30'000;

// The window while its service is killed and comes back.
class TestDesktopKill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingGoesOnAfterAKill();
};

void TestDesktopKill::everythingGoesOnAfterAKill()
{
    const QTemporaryDir folder;
    ServiceProcess service(folder.filePath(QStringLiteral("data")));
    QVERIFY(service.start({QStringLiteral("--fault"),
                           QStringLiteral("stall=0,verb=POST,path=/base-service/files,times=0")}));
    StartOptions options;
    options.paths = AppPaths::below(folder.filePath(QStringLiteral("home")));
    SavedConnection connection;
    connection.address = service.baseApi();
    connection.projectId = QStringLiteral("p1");
    connection.proxy = QStringLiteral("none");
    options.connection = connection;
    Desktop program(options);
    program.start();
    QTRY_VERIFY_WITH_TIMEOUT(!program.workspace()->session.projectId().isEmpty(), WaitMs);
    QFile file(folder.filePath(QStringLiteral("a.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    VellTransferQueue &queue = program.workspace()->queue;
    queue.upload(file.fileName(), QString());
    QTRY_COMPARE_WITH_TIMEOUT(queue.totals().count(VellTransferState::Sending), 1, WaitMs);
    service.kill();
    MainWindow *const window = program.window();
    auto *const offline = window->findChild<MessageBar *>(QStringLiteral("offlineBar"));
    QTRY_VERIFY_WITH_TIMEOUT(offline->isVisible(), WaitMs);
    QVERIFY(!window->actionTable()->at(ActionId::NewFolder)->isEnabled());
    QVERIFY(service.start());
    QTRY_VERIFY_WITH_TIMEOUT(!offline->isVisible(), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(queue.totals().count(VellTransferState::Done), 1, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(window->pane()->model()->rowCount(), 1, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(window->pane()->model()->index(0, 0).data().toString(),
                              QStringLiteral("a.txt"), WaitMs);
}

QTEST_MAIN(TestDesktopKill)
#include "tst_desktop_kill.moc"
