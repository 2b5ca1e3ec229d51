#include "DesktopWorld.h"

#include <desktop/lists/NoticePage.h>
#include <desktop/window/MessageBar.h>

#include <models/VellChangePoll.h>

#include <QLineEdit>
#include <QMimeData>
#include <QTreeView>

using namespace desktop;

// What the window shows and keeps when the service or another user does not do what is expected.
class TestDesktopFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stalledListCanBeLeft();
    void lostReplyOfARenameIsSaid();
    void fullStoreFailsTheUploadAndKeepsIt();
    void revokedRightFailsTheUpload();
    void revokedRightFailsTheRename();
    void nameTakenByAnotherUserIsSaid();
    void nameThatIsTypedStaysWhenAnotherUserChangesTheList();
    void removalByAnotherUserLeavesTheSelection();
    void folderDeletedByAnotherUserIsNotEmpty();
};

namespace {

struct SmallWorld : DesktopWorld
{
    explicit SmallWorld(const QString &role = {})
    {
        folder = await(documents.createFolder(QString(), QStringLiteral("Drawings")));
        a = store(QStringLiteral("a.txt"), "a");
        b = store(QStringLiteral("b.txt"), "b");
        store(QStringLiteral("inside.txt"), "i", folder._id);
        if (!role.isEmpty()) {
            setToken(service.addUser(QStringLiteral("vera")));
            setRole(role);
        }
        start();
        message = window()->findChild<MessageBar *>(QStringLiteral("messageBar"));
        table = find<QTreeView>(QStringLiteral("table"));
    }

    void setRole(const QString &role)
    {
        if (!service.setRole(QStringLiteral("p1"), QStringLiteral("vera"), role))
            qFatal("the role is not set");
    }

    void fail(FaultRule::Kind kind, const char *verb, const QString &path, int times = 1)
    {
        FaultRule rule;
        rule.kind = kind;
        rule.verb = verb;
        rule.pathPrefix = path;
        rule.times = times;
        service.addFault(rule);
    }

    void drop(const QString &file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        window()->pane()->model()->dropMimeData(&data, Qt::CopyAction, -1, -1, {});
    }

    //! Opens the editor of the name.
    QLineEdit *editName(const QString &name)
    {
        select({name});
        QTest::keyClick(table, Qt::Key_F2);
        auto *const editor = table->viewport()->findChild<QLineEdit *>();
        if (!editor)
            qFatal("no name is edited");
        QCoreApplication::processEvents(); // the selection of the name
        return editor;
    }

    void poll() { window()->findChild<VellChangePoll *>()->poll(); }

    VellDocument folder;
    VellDocument a;
    VellDocument b;
    MessageBar *message = nullptr;
    QTreeView *table = nullptr;
};

const QString lists = QStringLiteral("/document-service/projects/p1/documents");
const QString contents = QStringLiteral("/base-service/files");

} // namespace

void TestDesktopFaults::stalledListCanBeLeft()
{
    SmallWorld world;
    world.fail(FaultRule::Kind::Stall, "GET", lists);
    world.window()->navigate(Location::folder(world.folder._id));
    QTRY_VERIFY_WITH_TIMEOUT(world.window()->pane()->model()->isLoading(), WaitMs);
    QTest::qWait(300); // the service says nothing
    QVERIFY(!world.window()->findChild<NoticePage *>()->isVisible()); // it is not said to be empty
    QTest::keyClick(world.table, Qt::Key_Left, Qt::AltModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "a.txt", "b.txt"), WaitMs);
    QTest::keyClick(world.table, Qt::Key_Right, Qt::AltModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("inside.txt"), WaitMs);
}

void TestDesktopFaults::lostReplyOfARenameIsSaid()
{
    SmallWorld world;
    world.fail(FaultRule::Kind::LoseReply, "PUT", QStringLiteral("/document-service"));
    QLineEdit *const editor = world.editName(QStringLiteral("a.txt"));
    editor->setText(QStringLiteral("c.txt"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(
        world.message->text().contains(QStringLiteral("“a.txt” could not be renamed.")), WaitMs);
    QCOMPARE(world.names(), list("Drawings", "b.txt", "c.txt")); // the service has done it
    QTest::keyClick(world.window(), Qt::Key_F5);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "b.txt", "c.txt"), WaitMs);
}

void TestDesktopFaults::fullStoreFailsTheUploadAndKeepsIt()
{
    SmallWorld world;
    world.fail(FaultRule::Kind::NoRoom, "POST", contents, 0);
    world.drop(world.makeFile(QStringLiteral("new.txt"), "new"));
    QTRY_VERIFY_WITH_TIMEOUT(world.message->text().contains(QLatin1String("1 failed")), WaitMs);
    auto *const transfers = world.find<QTreeView>(QStringLiteral("transfers"));
    QVERIFY2(
        transfers->model()->index(0, 1).data().toString().contains(QLatin1String("disk is full")),
        qPrintable(transfers->model()->index(0, 1).data().toString()));
    QCOMPARE(world.names(), list("Drawings", "a.txt", "b.txt"));
    world.service.clearFaults();
    auto *const retry = world.window()->findChild<QAction *>(QStringLiteral("retry"));
    QTRY_VERIFY_WITH_TIMEOUT(retry->isEnabled(), WaitMs);
    retry->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "a.txt", "b.txt", "new.txt"),
                              WaitMs);
}

void TestDesktopFaults::revokedRightFailsTheUpload()
{
    SmallWorld world(QStringLiteral("editor"));
    world.setRole(QStringLiteral("viewer"));
    world.drop(world.makeFile(QStringLiteral("new.txt"), "new"));
    QTRY_VERIFY_WITH_TIMEOUT(world.message->text().contains(QLatin1String("1 failed")), WaitMs);
    QCOMPARE(world.shownNames(), list("Drawings", "a.txt", "b.txt"));
    world.setRole(QStringLiteral("editor"));
    world.window()->findChild<QAction *>(QStringLiteral("retry"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "a.txt", "b.txt", "new.txt"),
                              WaitMs);
}

void TestDesktopFaults::revokedRightFailsTheRename()
{
    SmallWorld world(QStringLiteral("editor"));
    QLineEdit *const editor = world.editName(QStringLiteral("a.txt"));
    world.setRole(QStringLiteral("viewer"));
    editor->setText(QStringLiteral("c.txt"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(
        world.message->text().contains(QStringLiteral("“a.txt” could not be renamed.")), WaitMs);
    QCOMPARE(world.shownNames(), list("Drawings", "a.txt", "b.txt"));
}

void TestDesktopFaults::nameTakenByAnotherUserIsSaid()
{
    SmallWorld world;
    QLineEdit *const editor = world.editName(QStringLiteral("a.txt"));
    editor->setText(QStringLiteral("c.txt"));
    world.renameElsewhere(world.b, QStringLiteral("c.txt"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(
        world.message->text().contains(QStringLiteral("“a.txt” could not be renamed.")), WaitMs);
    QCOMPARE(world.names(), list("Drawings", "a.txt", "c.txt"));
    world.poll();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "a.txt", "c.txt"), WaitMs);
}

void TestDesktopFaults::nameThatIsTypedStaysWhenAnotherUserChangesTheList()
{
    SmallWorld world;
    QLineEdit *const editor = world.editName(QStringLiteral("b.txt"));
    QTest::keyClicks(editor, QStringLiteral("mine"));
    world.renameElsewhere(world.a, QStringLiteral("z.txt"));
    world.store(QStringLiteral("0.txt"));
    world.poll();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "0.txt", "b.txt", "z.txt"),
                              WaitMs);
    QCOMPARE(world.table->viewport()->findChild<QLineEdit *>(), editor);
    QCOMPARE(editor->text(), QStringLiteral("mine.txt"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("0.txt", "Drawings", "mine.txt", "z.txt"),
                              WaitMs);
}

void TestDesktopFaults::removalByAnotherUserLeavesTheSelection()
{
    SmallWorld world;
    world.select({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    await(world.documents.remove({world.a._id}));
    world.poll();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "b.txt"), WaitMs);
    const QList<VellDocument> selection = world.window()->pane()->selection();
    QCOMPARE(selection.size(), 1);
    QCOMPARE(selection.constFirst()._id, world.b._id);
}

void TestDesktopFaults::folderDeletedByAnotherUserIsNotEmpty()
{
    SmallWorld world;
    world.window()->navigate(Location::folder(world.folder._id));
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("inside.txt"), WaitMs);
    await(world.documents.remove({world.folder._id}));
    world.poll();
    auto *const notice = world.window()->findChild<NoticePage *>();
    QTRY_COMPARE_WITH_TIMEOUT(notice->title(), QStringLiteral("This folder has been deleted"),
                              WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(!world.action(ActionId::UploadFiles)->isEnabled(), WaitMs);
}

QTEST_MAIN(TestDesktopFaults)
#include "tst_desktop_faults.moc"
