#include "DesktopWorld.h"

#include <desktop/changes/DocumentMime.h>
#include <desktop/window/MessageBar.h>

#include <QClipboard>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTreeView>

using namespace desktop;

// What changes documents, by keyboard, menu and drag, with its way back.
class TestDesktopChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newFolderIsNamedInPlace();
    void nameIsEditedInPlace();
    void takenNameIsSaid();
    void selectAllSelectsAll_data();
    void selectAllSelectsAll();
    void deleteAndUndo();
    void cutAndPasteAndUndo();
    void dropMovesIntoAFolder();
    void dropOnItselfIsRefused();
    void recycleBinRestoresAndEmpties();
    void favouriteIsToggled();
    void viewerMayChangeNothing();
    void revokedRightIsSaid();
    void lostReplyChangesOnce();
};

namespace {

struct SmallWorld : DesktopWorld
{
    explicit SmallWorld(bool isStarted = true)
    {
        folder = await(documents.createFolder(QString(), QStringLiteral("Drawings")));
        a = store(QStringLiteral("a.txt"), "a");
        b = store(QStringLiteral("b.txt"), "b");
        if (!isStarted)
            return;
        start();
        table = find<QTreeView>(QStringLiteral("table"));
    }

    //! Types \a name into the editor of the list and ends it with \a end.
    void typeName(const QString &name, Qt::Key end = Qt::Key_Return) const
    {
        QLineEdit *editor = nullptr;
        const bool isThere = QTest::qWaitFor(
            [&] {
                editor = table->viewport()->findChild<QLineEdit *>();
                return editor != nullptr;
            },
            WaitMs);
        if (!isThere)
            qFatal("no name is edited");
        QCoreApplication::processEvents(); // the selection of the name
        editor->setText(name);
        QTest::keyClick(editor, end);
    }

    VellDocument folder;
    VellDocument a;
    VellDocument b;
    QTreeView *table = nullptr;
};

QStringList allNames()
{
    return list("Drawings", "a.txt", "b.txt");
}

} // namespace

void TestDesktopChanges::newFolderIsNamedInPlace()
{
    SmallWorld world;
    QTest::keyClick(world.window(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    world.typeName(QStringLiteral("Reports"));
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("Drawings", "Reports", "a.txt", "b.txt"), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.shownNames().contains(QStringLiteral("Reports")), WaitMs);
}

void TestDesktopChanges::nameIsEditedInPlace()
{
    SmallWorld world;
    world.select({QStringLiteral("a.txt")});
    QTest::keyClick(world.table, Qt::Key_F2);
    auto *const editor = world.table->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QTRY_COMPARE_WITH_TIMEOUT(editor->selectedText(), QStringLiteral("a"),
                              WaitMs); // without the suffix
    world.typeName(QStringLiteral("c.txt"));
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("Drawings", "b.txt", "c.txt"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "b.txt", "c.txt"), WaitMs);
    QTest::keyClick(world.window(), Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), allNames(), WaitMs);
}

void TestDesktopChanges::takenNameIsSaid()
{
    SmallWorld world;
    world.select({QStringLiteral("a.txt")});
    QTest::keyClick(world.table, Qt::Key_F2);
    world.typeName(QStringLiteral("b.txt"));
    auto *const bar = world.window()->findChild<MessageBar *>(QStringLiteral("messageBar"));
    QTRY_VERIFY_WITH_TIMEOUT(bar->text().contains(QStringLiteral("“a.txt” could not be renamed.")),
                             WaitMs);
    QCOMPARE(world.names(), allNames());
    QVERIFY(!world.action(ActionId::Undo)->isEnabled());
}

void TestDesktopChanges::selectAllSelectsAll_data()
{
    QTest::addColumn<bool>("isIcons");
    QTest::newRow("table") << false;
    QTest::newRow("icons") << true;
}

void TestDesktopChanges::selectAllSelectsAll()
{
    QFETCH(bool, isIcons);
    SmallWorld world;
    if (isIcons)
        world.action(ActionId::IconsView)->trigger();
    world.window()->pane()->setListFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.window()->pane()->selection().size(), 3, WaitMs);
    QCOMPARE(world.window()->pane()->selectedCount(), 3);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), QStringList(), WaitMs);
}

void TestDesktopChanges::deleteAndUndo()
{
    SmallWorld world;
    world.select({QStringLiteral("a.txt"), QStringLiteral("Drawings")});
    QTest::keyClick(world.table, Qt::Key_Delete);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("b.txt"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("b.txt"), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.action(ActionId::Undo)->isEnabled(), WaitMs);
    QTest::keyClick(world.window(), Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), allNames(), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), allNames(), WaitMs);
}

void TestDesktopChanges::cutAndPasteAndUndo()
{
    SmallWorld world;
    world.select({QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    QTest::keyClick(world.table, Qt::Key_X, Qt::ControlModifier);
    world.window()->navigate(Location::folder(world.folder._id));
    QTRY_VERIFY_WITH_TIMEOUT(world.action(ActionId::Paste)->isEnabled(), WaitMs);
    auto *const notice = world.find<QWidget>(QStringLiteral("notice"));
    QTRY_VERIFY_WITH_TIMEOUT(notice->hasFocus(), WaitMs);
    QTest::keyClick(notice, Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(world.folder._id), list("a.txt", "b.txt"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("a.txt", "b.txt"), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.action(ActionId::Undo)->isEnabled(), WaitMs);
    world.action(ActionId::Undo)->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), allNames(), WaitMs);
}

void TestDesktopChanges::dropMovesIntoAFolder()
{
    SmallWorld world;
    DocumentListModel *const model = world.window()->pane()->model();
    const std::unique_ptr<QMimeData> dragged(model->mimeData({model->indexOf(world.a._id)}));
    const QModelIndex target = model->indexOf(world.folder._id);
    QVERIFY(model->canDropMimeData(dragged.get(), Qt::MoveAction, -1, -1, target));
    model->dropMimeData(dragged.get(), Qt::MoveAction, -1, -1, target);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(world.folder._id), list("a.txt"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "b.txt"), WaitMs);
}

void TestDesktopChanges::dropOnItselfIsRefused()
{
    SmallWorld world;
    DocumentListModel *const model = world.window()->pane()->model();
    const QModelIndex folder = model->indexOf(world.folder._id);
    const std::unique_ptr<QMimeData> dragged(model->mimeData({folder}));
    QVERIFY(!model->canDropMimeData(dragged.get(), Qt::MoveAction, -1, -1, folder));
    // Onto a file is into the folder that is open; what is there already is not moved.
    model->dropMimeData(dragged.get(), Qt::MoveAction, -1, -1, model->indexOf(world.b._id));
    const std::unique_ptr<QMimeData> foreign(
        document_mime::make(QStringLiteral("another project"), {world.a._id}));
    QVERIFY(!model->canDropMimeData(foreign.get(), Qt::MoveAction, -1, -1, folder));
    QCOMPARE(world.names(), allNames());
    QVERIFY(!world.workspace()->changes.canUndo());
}

void TestDesktopChanges::recycleBinRestoresAndEmpties()
{
    SmallWorld world;
    await(world.documents.remove({world.a._id, world.b._id}));
    world.window()->navigate(Location::place(Location::Kind::RecycleBin));
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("a.txt", "b.txt"), WaitMs);
    world.select({QStringLiteral("a.txt")});
    QVERIFY(world.action(ActionId::Restore)->isEnabled());
    QTest::keyClick(world.table, Qt::Key_R, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("b.txt"), WaitMs);
    QCOMPARE(world.names(), list("Drawings", "a.txt"));
    world.action(ActionId::EmptyRecycleBin)->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<QMessageBox *>(QApplication::activeModalWidget()),
                             WaitMs);
    auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY(box->text().contains(QLatin1Char('1')));
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("confirm")), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), QStringList(), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(
        await(world.documents.count(VellDocumentSource::recycleBin().condition())), 0, WaitMs);
}

void TestDesktopChanges::favouriteIsToggled()
{
    SmallWorld world;
    world.select({QStringLiteral("a.txt")});
    QTest::keyClick(world.window(), Qt::Key_B, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(await(world.documents.isFavorite(world.a._id)), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(world.window()->pane()->selection().constFirst().favorite, WaitMs);
    QTest::keyClick(world.window(), Qt::Key_B, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!await(world.documents.isFavorite(world.a._id)), WaitMs);
}

void TestDesktopChanges::viewerMayChangeNothing()
{
    SmallWorld setUp(false);
    const QString token = setUp.service.addUser(QStringLiteral("vera"));
    QVERIFY(setUp.service.setRole(QStringLiteral("p1"), QStringLiteral("vera"),
                                  QStringLiteral("viewer")));
    DesktopWorld &world = setUp;
    world.setToken(token);
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), allNames(), WaitMs);
    world.select({QStringLiteral("a.txt")});
    for (const ActionId id : {ActionId::Rename, ActionId::Delete, ActionId::Cut})
        QVERIFY2(!world.action(id)->isEnabled(), qPrintable(world.action(id)->text()));
    QTRY_VERIFY_WITH_TIMEOUT(!world.action(ActionId::NewFolder)->isEnabled(), WaitMs);
    QVERIFY(
        world.action(ActionId::NewFolder)->toolTip().contains(QLatin1String("You may not add")));
    QVERIFY(world.action(ActionId::Download)->isEnabled());
    QTest::keyClick(world.find<QTreeView>(QStringLiteral("table")), Qt::Key_Delete);
    QCOMPARE(world.shownNames(), allNames());
}

void TestDesktopChanges::revokedRightIsSaid()
{
    SmallWorld setUp(false);
    const QString token = setUp.service.addUser(QStringLiteral("vera"));
    QVERIFY(setUp.service.setRole(QStringLiteral("p1"), QStringLiteral("vera"),
                                  QStringLiteral("editor")));
    DesktopWorld &world = setUp;
    world.setToken(token);
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), allNames(), WaitMs);
    QVERIFY(setUp.service.setRole(QStringLiteral("p1"), QStringLiteral("vera"),
                                  QStringLiteral("viewer")));
    world.select({QStringLiteral("a.txt")});
    QTest::keyClick(world.find<QTreeView>(QStringLiteral("table")), Qt::Key_Delete);
    auto *const bar = world.window()->findChild<MessageBar *>(QStringLiteral("messageBar"));
    QTRY_VERIFY_WITH_TIMEOUT(bar->text().contains(QStringLiteral("“a.txt” could not be deleted.")),
                             WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), allNames(), WaitMs);
}

void TestDesktopChanges::lostReplyChangesOnce()
{
    SmallWorld world;
    FaultRule rule;
    rule.kind = FaultRule::Kind::LoseReply;
    rule.verb = "POST";
    world.service.addFault(rule);
    QTest::keyClick(world.window(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    auto *const bar = world.window()->findChild<MessageBar *>(QStringLiteral("messageBar"));
    QTRY_VERIFY_WITH_TIMEOUT(bar->text().contains(QLatin1String("could not be created")), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.names().size(), 4, WaitMs);
    QTest::keyClick(world.window(), Qt::Key_F5);
    QTRY_COMPARE(world.shownNames().size(), 4); // it was made, once
}

QTEST_MAIN(TestDesktopChanges)
#include "tst_desktop_changes.moc"
