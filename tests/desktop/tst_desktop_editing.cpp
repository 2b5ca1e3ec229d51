#include "DesktopWorld.h"

#include <desktop/window/MessageBar.h>

#include <QDesktopServices>
#include <QFileInfo>
#include <QPushButton>
#include <QTreeView>

using namespace desktop;

// Opening documents with programs of the computer, and what becomes of their changes.
class TestDesktopEditing : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    //! Stands for the program of the system.
    void openFile(const QUrl &url) { m_opened.append(url.toLocalFile()); }

private Q_SLOTS:
    void initTestCase();
    void init() { m_opened.clear(); }
    void doubleClickOpensTheFile();
    void savedChangeBecomesAVersionAfterAQuestion();
    void savedChangeBecomesAVersionAtOnce();
    void changeDuringTheUploadIsAskedForToo();
    void conflictHasThreeWaysOut_data();
    void conflictHasThreeWaysOut();
    void deletedMeanwhileIsKept();
    void changeIsFoundAfterARestart();
    void failedFetchIsSaid();

private:
    QStringList m_opened;
};

namespace {

struct SmallWorld : DesktopWorld
{
    SmallWorld()
    {
        document = store(QStringLiteral("plan.txt"), "first");
        start();
        prepare();
    }

    void prepare()
    {
        workspace()->edited.watch()->setSettleTime(std::chrono::milliseconds(50));
        bar = window()->findChild<MessageBar *>(QStringLiteral("editBar"));
    }

    //! Opens the document by a double click, and waits for the program.
    QString open(const QStringList &opened)
    {
        const int before = opened.size();
        auto *const table = find<QTreeView>(QStringLiteral("table"));
        select({QStringLiteral("plan.txt")});
        QTest::keyClick(table, Qt::Key_Return);
        if (!QTest::qWaitFor([&] { return opened.size() > before; }, WaitMs))
            qFatal("nothing is opened");
        return opened.constLast();
    }

    static void write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(path));
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    //! The content of the document called \a name as the service has it.
    QByteArray stored(const QString &name = QStringLiteral("plan.txt"))
    {
        const auto found = await(documents.find(QString(), name));
        return found ? content(found->fileId) : QByteArray("(no document)");
    }

    //! Somebody else makes a new version.
    void changeElsewhere(const QByteArray &content)
    {
        const VellDocument other = store(QStringLiteral("other.txt"), content);
        await(documents.makeCurrent(document._id, other.fileId));
        await(documents.remove({other._id}));
    }

    VellDocument document;
    MessageBar *bar = nullptr;
};

} // namespace

void TestDesktopEditing::initTestCase()
{
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openFile");
}

void TestDesktopEditing::doubleClickOpensTheFile()
{
    SmallWorld world;
    const QString path = world.open(m_opened);
    QVERIFY(path.endsWith(QLatin1String("/plan.txt")));
    QVERIFY(!path.contains(world.document._id)); // what a service calls it is no path
#ifndef Q_OS_WIN
    const QFile::Permissions others = QFileInfo(world.workspace()->paths.opened).permissions()
        & (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
    QCOMPARE(int(others), 0);
#endif
    QCOMPARE(SmallWorld::read(path), QByteArray("first"));
    // The same file, without fetching it again.
    world.open(m_opened);
    QCOMPARE(m_opened, QStringList({path, path}));
    // A newer version is fetched.
    world.changeElsewhere("second");
    world.window()->pane()->reload();
    QTRY_VERIFY_WITH_TIMEOUT(
        world.window()
                ->pane()
                ->model()
                ->document(world.window()->pane()->model()->indexOf(world.document._id))
                ->fileId
            != world.document.fileId,
        WaitMs);
    world.open(m_opened);
    QCOMPARE(SmallWorld::read(path), QByteArray("second"));
}

void TestDesktopEditing::savedChangeBecomesAVersionAfterAQuestion()
{
    SmallWorld world;
    const QString path = world.open(m_opened);
    QVERIFY(!world.bar->isVisible());
    SmallWorld::write(path, "changed");
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->text().contains(QStringLiteral("“plan.txt”")), WaitMs);
    QCOMPARE(world.stored(), QByteArray("first")); // not before the answer
    QTest::mouseClick(world.bar->findChild<QPushButton *>(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), QByteArray("changed"), WaitMs);
    QCOMPARE(await(world.documents.history(world.document._id)).size(), 2);
    QTRY_VERIFY_WITH_TIMEOUT(!world.bar->isVisible(), WaitMs);
    SmallWorld::write(path, "changed again");
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->isVisible(), WaitMs);
}

void TestDesktopEditing::savedChangeBecomesAVersionAtOnce()
{
    SmallWorld world;
    world.workspace()->settings.setSavedWithoutAsking(true);
    const QString path = world.open(m_opened);
    SmallWorld::write(path, "changed");
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), QByteArray("changed"), WaitMs);
    SmallWorld::write(path, "changed again");
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), QByteArray("changed again"), WaitMs);
}

void TestDesktopEditing::changeDuringTheUploadIsAskedForToo()
{
    SmallWorld world;
    const QString path = world.open(m_opened);
    SmallWorld::write(path, "changed");
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->isVisible(), WaitMs);
    FaultRule slow;
    slow.kind = FaultRule::Kind::Slow;
    slow.value = 1000;
    slow.verb = "PUT"; // the content has been read and sent by then
    world.service.addFault(slow);
    QTest::mouseClick(world.bar->findChild<QPushButton *>(), Qt::LeftButton);
    const VellTransferQueue &queue = world.workspace()->queue;
    QTRY_COMPARE_WITH_TIMEOUT(queue.totals().count(VellTransferState::Saving), 1, WaitMs);
    SmallWorld::write(path, "changed again");
    QTRY_COMPARE_WITH_TIMEOUT(queue.totals().openCount(), 0, WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->isVisible(), WaitMs);
    QTest::mouseClick(world.bar->findChild<QPushButton *>(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), QByteArray("changed again"), WaitMs);
}

void TestDesktopEditing::conflictHasThreeWaysOut_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QByteArray>("content"); // of the document
    QTest::addColumn<QByteArray>("local");
    QTest::addColumn<int>("documentCount");
    QTest::newRow("keep both") << "keepBoth" << QByteArray("theirs") << QByteArray("mine") << 2;
    QTest::newRow("new version") << "newVersion" << QByteArray("mine") << QByteArray("mine") << 1;
    QTest::newRow("discard mine") << "discardMine" << QByteArray("theirs") << QByteArray("theirs")
                                  << 1;
}

void TestDesktopEditing::conflictHasThreeWaysOut()
{
    QFETCH(QString, button);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, local);
    QFETCH(int, documentCount);
    SmallWorld world;
    const QString path = world.open(m_opened);
    world.changeElsewhere("theirs");
    SmallWorld::write(path, "mine");
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->isVisible(), WaitMs);
    QTest::mouseClick(world.bar->findChild<QPushButton *>(), Qt::LeftButton);
    auto *const way = world.find<QPushButton>(button);
    QCOMPARE(world.stored(), QByteArray("theirs")); // nothing is replaced before the answer
    QTest::mouseClick(way, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(world.names().size(), documentCount, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), content, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(SmallWorld::read(path), local, WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(!world.bar->isVisible(), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.workspace()->edited.changedPaths().isEmpty(), WaitMs);
}

void TestDesktopEditing::deletedMeanwhileIsKept()
{
    SmallWorld world;
    const QString path = world.open(m_opened);
    await(world.documents.remove({world.document._id}));
    SmallWorld::write(path, "mine");
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->isVisible(), WaitMs);
    QTest::mouseClick(world.bar->findChild<QPushButton *>(), Qt::LeftButton);
    auto *const way = world.find<QPushButton>(QStringLiteral("keepBoth"));
    QTest::mouseClick(way, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), QByteArray("mine"), WaitMs);
}

void TestDesktopEditing::changeIsFoundAfterARestart()
{
    SmallWorld world;
    const QString path = world.open(m_opened);
    world.restart();
    world.prepare();
    QVERIFY(!world.bar->isVisible());
    world.window()->close();
    SmallWorld::write(path, "changed while the program did not run");
    world.restart();
    world.prepare();
    QTRY_VERIFY_WITH_TIMEOUT(world.bar->isVisible(), WaitMs);
    QTest::mouseClick(world.bar->findChild<QPushButton *>(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(world.stored(), QByteArray("changed while the program did not run"),
                              WaitMs);
}

void TestDesktopEditing::failedFetchIsSaid()
{
    SmallWorld world;
    await(world.documents.remove({world.document._id}));
    world.window()->pane()->setListFocus();
    world.select({QStringLiteral("plan.txt")});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    auto *const message = world.window()->findChild<MessageBar *>(QStringLiteral("messageBar"));
    QTRY_VERIFY_WITH_TIMEOUT(message->text().contains(QLatin1String("could not be opened")),
                             WaitMs);
    QVERIFY(m_opened.isEmpty());
}

QTEST_MAIN(TestDesktopEditing)
#include "tst_desktop_editing.moc"
