#include "DesktopWorld.h"

#include <desktop/window/MessageBar.h>

#include <QClipboard>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>

using namespace desktop;

// Uploads and downloads from the window, names that are taken, and the panel.
class TestDesktopTransfers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void droppedFilesAreUploaded();
    void pastedFilesAreUploaded();
    void chosenFolderIsDownloaded();
    void chosenFileIsUploaded();
    void singleFileIsPromptedFor_data();
    void singleFileIsPromptedFor();
    void batchIsListed();
    void laterOnesAreAnsweredToo();
    void returnAloneKeepsBoth();
    void decidingLaterKeepsTheQuestions();
    void transfersArePausedAndResumed();
    void failureIsSaidAndTriedAgain();
    void transfersSurviveARestart();
};

namespace {

struct SmallWorld : DesktopWorld
{
    SmallWorld() { start(); }

    //! As the file manager does.
    void drop(const QStringList &files, const QModelIndex &target = {})
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &file : files)
            urls.append(QUrl::fromLocalFile(file));
        data.setUrls(urls);
        window()->pane()->model()->dropMimeData(&data, Qt::CopyAction, -1, -1, target);
    }

    //! Drops a.txt and b.txt, which others have stored before.
    void dropTakenNames()
    {
        QStringList files;
        for (const QString &name : {QStringLiteral("a.txt"), QStringLiteral("b.txt")}) {
            store(name, "theirs");
            files.append(makeFile(name, "mine"));
        }
        drop(files);
    }

    //! Enters the local file or folder \a name into the file dialog.
    void choose(const QString &name)
    {
        auto *const line = find<QLineEdit>(QStringLiteral("fileNameEdit"));
        line->setText(path(name));
        QMetaObject::invokeMethod(line->window(), "accept");
    }

    QTreeView *transfers() { return find<QTreeView>(QStringLiteral("transfers")); }
    QAction *panelAction(const QString &name) { return window()->findChild<QAction *>(name); }
    QString status() { return window()->statusBar()->currentMessage(); }
    QString content(const QString &name)
    {
        const auto document = await(documents.find(QString(), name));
        return QString::fromUtf8(ClientWorld::content(document->fileId));
    }
};

FaultRule stall(const char *verb)
{
    FaultRule rule;
    rule.kind = FaultRule::Kind::Stall;
    rule.verb = verb;
    rule.pathPrefix = QStringLiteral("/base-service");
    rule.times = 0;
    return rule;
}

} // namespace

void TestDesktopTransfers::droppedFilesAreUploaded()
{
    SmallWorld world;
    world.makeFile(QStringLiteral("to send/below/b.txt"), "b");
    world.drop(
        {world.makeFile(QStringLiteral("a.txt"), "a"), world.path(QStringLiteral("to send"))});
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("a.txt", "to send"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("to send", "a.txt"), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.status().contains(QLatin1String("2 files uploaded")), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.transfers()->model()->rowCount(), 4, WaitMs);
    world.panelAction(QStringLiteral("clear"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.transfers()->model()->rowCount(), 0, WaitMs);
}

void TestDesktopTransfers::pastedFilesAreUploaded()
{
    SmallWorld world;
    auto *const data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(world.makeFile(QStringLiteral("a.txt")))});
    QApplication::clipboard()->setMimeData(data);
    QTRY_VERIFY_WITH_TIMEOUT(world.action(ActionId::Paste)->isEnabled(), WaitMs);
    world.window()->pane()->setListFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("a.txt"), WaitMs);
}

void TestDesktopTransfers::chosenFolderIsDownloaded()
{
    SmallWorld world;
    const VellDocument folder =
        await(world.documents.createFolder(QString(), QStringLiteral("Drawings")));
    world.store(QStringLiteral("a.txt"), "content of a", folder._id);
    world.window()->pane()->reload();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings"), WaitMs);
    world.select({QStringLiteral("Drawings")});
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("down"))));
    QTest::keyClick(world.window(), Qt::Key_D, Qt::ControlModifier);
    world.choose(QStringLiteral("down"));
    QFile file(world.path(QStringLiteral("down/Drawings/a.txt")));
    QTRY_VERIFY_WITH_TIMEOUT(file.exists(), WaitMs);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("content of a"));
    QTRY_VERIFY_WITH_TIMEOUT(world.status().contains(QLatin1String("1 file downloaded")), WaitMs);
}

void TestDesktopTransfers::chosenFileIsUploaded()
{
    SmallWorld world;
    world.makeFile(QStringLiteral("a.txt"));
    QTest::keyClick(world.window(), Qt::Key_U, Qt::ControlModifier);
    world.choose(QStringLiteral("a.txt"));
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("a.txt"), WaitMs);
}

void TestDesktopTransfers::singleFileIsPromptedFor_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("content");
    QTest::newRow("replace") << int(QMessageBox::Ok) << list("a.txt") << "mine";
    QTest::newRow("keep both") << int(QMessageBox::Save) << list("a(2).txt", "a.txt") << "theirs";
    QTest::newRow("skip") << int(QMessageBox::Discard) << list("a.txt") << "theirs";
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << list("a.txt") << "theirs";
}

void TestDesktopTransfers::singleFileIsPromptedFor()
{
    QFETCH(int, button);
    QFETCH(QStringList, names);
    SmallWorld world;
    world.store(QStringLiteral("a.txt"), "theirs");
    // The prompt runs an event loop of its own.
    QTimer presser;
    presser.callOnTimeout([button] {
        auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box)
            box->button(QMessageBox::StandardButton(button))->click();
    });
    presser.start(50);
    world.drop({world.makeFile(QStringLiteral("a.txt"), "mine")});
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.totals().openCount(), 0, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.count(), 1, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), names, WaitMs);
    QTEST(world.content(QStringLiteral("a.txt")), "content");
}

void TestDesktopTransfers::batchIsListed()
{
    SmallWorld world;
    world.store(QStringLiteral("a.txt"), "theirs");
    world.store(QStringLiteral("b.txt"), "theirs");
    world.drop({world.makeFile(QStringLiteral("a.txt"), "mine"),
                world.makeFile(QStringLiteral("b.txt"), "mine"),
                world.makeFile(QStringLiteral("c.txt"), "mine")});
    auto *const conflicts = world.find<QTreeWidget>(QStringLiteral("conflicts"));
    QTRY_COMPARE_WITH_TIMEOUT(conflicts->topLevelItemCount(), 2, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.names().size(), 3, WaitMs); // the third goes on meanwhile
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("replaceAll")), Qt::LeftButton);
    QTest::keyClick(conflicts->window(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.content(QStringLiteral("a.txt")), QStringLiteral("mine"),
                              WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.content(QStringLiteral("b.txt")), QStringLiteral("mine"),
                              WaitMs);
    QCOMPARE(world.names().size(), 3);
}

void TestDesktopTransfers::laterOnesAreAnsweredToo()
{
    SmallWorld world;
    QStringList files;
    constexpr int FileCount = 130; // more than there are open questions at a time
    for (int i = 0; i < FileCount; ++i) {
        const QString name = QStringLiteral("%1.txt").arg(i);
        world.store(name, "theirs");
        files.append(world.makeFile(name, "mine"));
    }
    world.drop(files);
    auto *const conflicts = world.find<QTreeWidget>(QStringLiteral("conflicts"));
    QTRY_VERIFY_WITH_TIMEOUT(conflicts->topLevelItemCount() >= 100, WaitMs);
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("skipAll")), Qt::LeftButton);
    world.find<QAbstractButton>(QStringLiteral("later"))->click();
    QTest::keyClick(conflicts->window(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.totals().openCount(), 0, WaitMs);
    QCOMPARE(world.workspace()->queue.totals().count(VellTransferState::Done), FileCount);
    QCOMPARE(world.names().size(), FileCount);
}

//! Pressing Return without reading must not hide anything of the others.
void TestDesktopTransfers::returnAloneKeepsBoth()
{
    SmallWorld world;
    world.dropTakenNames();
    QTRY_COMPARE_WITH_TIMEOUT(
        world.find<QTreeWidget>(QStringLiteral("conflicts"))->topLevelItemCount(), 2, WaitMs);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.totals().openCount(), 0, WaitMs);
    QCOMPARE(world.names().size(), 4);
    QCOMPARE(world.content(QStringLiteral("a.txt")), QStringLiteral("theirs"));
    QCOMPARE(world.content(QStringLiteral("a(2).txt")), QStringLiteral("mine"));
}

void TestDesktopTransfers::decidingLaterKeepsTheQuestions()
{
    SmallWorld world;
    world.dropTakenNames();
    QTRY_COMPARE_WITH_TIMEOUT(
        world.find<QTreeWidget>(QStringLiteral("conflicts"))->topLevelItemCount(), 2, WaitMs);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), WaitMs);
    QCOMPARE(world.workspace()->queue.totals().count(VellTransferState::Asking), 2);
    world.panelAction(QStringLiteral("answer"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(
        world.find<QTreeWidget>(QStringLiteral("conflicts"))->topLevelItemCount(), 2, WaitMs);
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("keepAll")), Qt::LeftButton);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.names().size(), 4, WaitMs);
}

void TestDesktopTransfers::transfersArePausedAndResumed()
{
    SmallWorld world;
    world.service.addFault(stall("POST"));
    world.drop({world.makeFile(QStringLiteral("a.txt"))});
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.totals().count(VellTransferState::Sending),
                              1, WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.panelAction(QStringLiteral("pause"))->isEnabled(), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.window()->windowTitle().endsWith(QString(u8" % – Documents")),
                             WaitMs);
    world.panelAction(QStringLiteral("pause"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.totals().count(VellTransferState::Paused), 1,
                              WaitMs);
    world.service.clearFaults();
    world.transfers()->selectAll();
    QTRY_VERIFY_WITH_TIMEOUT(world.panelAction(QStringLiteral("resume"))->isEnabled(), WaitMs);
    world.panelAction(QStringLiteral("resume"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("a.txt"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.window()->windowTitle(), QStringLiteral("Documents"), WaitMs);
}

void TestDesktopTransfers::failureIsSaidAndTriedAgain()
{
    SmallWorld world;
    const QString file = world.makeFile(QStringLiteral("a.txt"));
    QVERIFY(QFile::rename(file, world.path(QStringLiteral("moved"))));
    world.drop({file});
    auto *const bar = world.window()->findChild<MessageBar *>(QStringLiteral("messageBar"));
    QTRY_VERIFY_WITH_TIMEOUT(bar->text().contains(QLatin1String("1 failed")), WaitMs);
    QVERIFY(world.transfers()->model()->index(0, 1).data().toString().contains(
        QLatin1String("no longer exists")));
    QVERIFY(QFile::rename(world.path(QStringLiteral("moved")), file));
    QTRY_VERIFY_WITH_TIMEOUT(world.panelAction(QStringLiteral("retry"))->isEnabled(), WaitMs);
    world.panelAction(QStringLiteral("retry"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("a.txt"), WaitMs);
}

void TestDesktopTransfers::transfersSurviveARestart()
{
    SmallWorld world;
    world.service.addFault(stall("POST"));
    world.drop({world.makeFile(QStringLiteral("a.txt"))});
    QTRY_COMPARE_WITH_TIMEOUT(world.workspace()->queue.totals().count(VellTransferState::Sending),
                              1, WaitMs);
    world.window()->close();
    world.service.clearFaults();
    world.restart();
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("a.txt"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("a.txt"), WaitMs);
}

QTEST_MAIN(TestDesktopTransfers)
#include "tst_desktop_transfers.moc"
