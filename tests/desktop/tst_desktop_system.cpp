#include "DesktopWorld.h"

#include <desktop/signin/ConnectionStore.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QTimer>
#include <QTreeView>

using namespace desktop;

// Keyring, drags into other programs, saved searches, names in the tree.
class TestDesktopSystem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokenIsInTheVault_data();
    void tokenIsInTheVault();
    void forgottenConnectionLeavesTheVault();
    void systemWithoutKeyringKeepsTheFile();
    void draggedDocumentsAreFetched();
    void failedFetchDropsNothing();
    void ownWindowFetchesNothing();
    void searchIsSavedAmongThePlaces();
    void folderIsRenamedInTheTree();
};

namespace {

//! A keyring in memory.
class Vault : public TokenVault
{
public:
    enum class Way {
        Keeps,
        Refuses,
        NeverAnswers,
    };

    Vault(Way way, QHash<QString, QString> *tokens) : m_way(way), m_tokens(tokens) {}

    void write(const QString &id, const QString &token,
               const std::function<void(bool isKept)> &onEnd) override
    {
        if (m_way == Way::NeverAnswers)
            return;
        if (m_way == Way::Keeps)
            m_tokens->insert(id, token);
        onEnd(m_way == Way::Keeps);
    }
    void read(const QString &id, const std::function<void(const QString &token)> &onEnd) override
    {
        onEnd(m_tokens->value(id));
    }
    void remove(const QString &id) override { m_tokens->remove(id); }

private:
    const Way m_way;
    QHash<QString, QString> *const m_tokens;
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

SavedConnection connectionWithToken()
{
    SavedConnection connection;
    connection.address = QStringLiteral("https://one.example/");
    connection.token = QStringLiteral("secret");
    return connection;
}

QString tokenOf(ConnectionStore *store)
{
    QString token;
    store->withToken(*store->last(), [&token](const SavedConnection &c) { token = c.token; });
    return token;
}

} // namespace

void TestDesktopSystem::tokenIsInTheVault_data()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<bool>("isInFile");
    QTest::newRow("keeps") << int(Vault::Way::Keeps) << false;
    QTest::newRow("refuses") << int(Vault::Way::Refuses) << true;
    QTest::newRow("never answers") << int(Vault::Way::NeverAnswers) << true;
}

void TestDesktopSystem::tokenIsInTheVault()
{
    QFETCH(int, way);
    QFETCH(bool, isInFile);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("connections.json"));
    QHash<QString, QString> tokens;
    {
        ConnectionStore store(path, std::make_unique<Vault>(Vault::Way(way), &tokens));
        QVERIFY(!store.save(connectionWithToken()).isEmpty());
        QCOMPARE(tokenOf(&store), QStringLiteral("secret"));
    }
    QCOMPARE(contentOf(path).contains("secret"), isInFile);
    ConnectionStore later(path, std::make_unique<Vault>(Vault::Way(way), &tokens));
    QCOMPARE(tokenOf(&later), QStringLiteral("secret"));
    // Connecting again with what was read keeps it where it is.
    later.withToken(*later.last(), [&later](const SavedConnection &c) { later.save(c); });
    QCOMPARE(contentOf(path).contains("secret"), isInFile);
    QCOMPARE(tokenOf(&later), QStringLiteral("secret"));
}

void TestDesktopSystem::forgottenConnectionLeavesTheVault()
{
    const QTemporaryDir folder;
    QHash<QString, QString> tokens;
    ConnectionStore store(folder.filePath(QStringLiteral("connections.json")),
                          std::make_unique<Vault>(Vault::Way::Keeps, &tokens));
    const QString id = store.save(connectionWithToken());
    QCOMPARE(tokens.size(), 1);
    QVERIFY(store.remove(id));
    QVERIFY(tokens.isEmpty());
}

void TestDesktopSystem::systemWithoutKeyringKeepsTheFile()
{
    // Nobody listens there.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("connections.json"));
    ConnectionStore store(path, TokenVault::ofSystem());
    QVERIFY(!store.save(connectionWithToken()).isEmpty());
    QTest::qWait(500); // whatever answers has answered
    QVERIFY(contentOf(path).contains("secret"));
    QCOMPARE(tokenOf(&store), QStringLiteral("secret"));
}

void TestDesktopSystem::draggedDocumentsAreFetched()
{
    DesktopWorld world;
    const VellDocument folder =
        await(world.documents.createFolder(QString(), QStringLiteral("Drawings")));
    world.store(QStringLiteral("inside.txt"), "inside", folder._id);
    world.store(QStringLiteral("a.txt"), "a");
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    const DocumentListModel *const model = world.window()->pane()->model();
    const std::unique_ptr<QMimeData> dragged(
        model->mimeData({model->index(0, 0), model->index(1, 0)}));
    QVERIFY(dragged->hasUrls());
    QCOMPARE(world.workspace()->queue.count(), 0); // nothing before somebody asks
    const QList<QUrl> urls = dragged->urls();
    QCOMPARE(urls.size(), 2);
    QCOMPARE(contentOf(urls.at(0).toLocalFile() + QStringLiteral("/inside.txt")),
             QByteArray("inside"));
    QCOMPARE(contentOf(urls.at(1).toLocalFile()), QByteArray("a"));
    const int count = world.workspace()->queue.count();
    QCOMPARE(dragged->urls(), urls);
    QCOMPARE(world.workspace()->queue.count(), count); // not fetched again
}

void TestDesktopSystem::failedFetchDropsNothing()
{
    DesktopWorld world;
    world.store(QStringLiteral("a.txt"), "a");
    world.store(QStringLiteral("b.txt"), "b");
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    FaultRule rule;
    rule.kind = FaultRule::Kind::Status;
    rule.value = 403;
    rule.pathPrefix = QStringLiteral("/base-service/files");
    world.service.addFault(rule);
    const DocumentListModel *const model = world.window()->pane()->model();
    const std::unique_ptr<QMimeData> dragged(
        model->mimeData({model->index(0, 0), model->index(1, 0)}));
    QVERIFY(dragged->urls().isEmpty());
    QCOMPARE(world.workspace()->queue.totals().count(VellTransferState::Failed), 1);
}

void TestDesktopSystem::ownWindowFetchesNothing()
{
    DesktopWorld world;
    const VellDocument folder =
        await(world.documents.createFolder(QString(), QStringLiteral("Drawings")));
    world.store(QStringLiteral("a.txt"), "a");
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    DocumentListModel *const model = world.window()->pane()->model();
    const std::unique_ptr<QMimeData> dragged(model->mimeData({model->index(1, 0)}));
    model->dropMimeData(dragged.get(), Qt::MoveAction, -1, -1, model->index(0, 0));
    QTRY_COMPARE_WITH_TIMEOUT(world.names(folder._id), list("a.txt"), WaitMs);
    QCOMPARE(world.workspace()->queue.count(), 0);
}

void TestDesktopSystem::searchIsSavedAmongThePlaces()
{
    DesktopWorld world;
    world.store(QStringLiteral("plan.dwg"));
    world.store(QStringLiteral("notes.txt"));
    world.start();
    auto *places = world.find<QListWidget>(QStringLiteral("places"));
    const int count = places->count();
    auto *const line = world.find<QLineEdit>(QStringLiteral("search"));
    QTest::keyClicks(line, QStringLiteral("*.dwg"));
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("plan.dwg"), WaitMs);
    QTest::mouseClick(world.find<QAbstractButton>(QStringLiteral("saveSearch")), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeModalWidget(), WaitMs);
    auto *const name = QApplication::activeModalWidget()->findChild<QLineEdit *>();
    QCOMPARE(name->text(), QStringLiteral("*.dwg"));
    name->setText(QStringLiteral("All drawings"));
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(places->count(), count + 1, WaitMs);
    world.restart();
    places = world.find<QListWidget>(QStringLiteral("places"));
    QTRY_COMPARE_WITH_TIMEOUT(places->count(), count + 1, WaitMs);
    const QPoint place = places->visualItemRect(places->item(count)).center();
    QTest::mouseClick(places->viewport(), Qt::LeftButton, {}, place);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("plan.dwg"), WaitMs);
    QCOMPARE(world.find<QLineEdit>(QStringLiteral("search"))->text(), QStringLiteral("*.dwg"));
    QCOMPARE(places->currentRow(), count);
    // The menu waits in a loop of its own.
    QTimer::singleShot(0, this, [] {
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        menu->setActiveAction(menu->actions().constFirst());
        QTest::keyClick(menu, Qt::Key_Return);
    });
    Q_EMIT places->customContextMenuRequested(place);
    QTRY_COMPARE_WITH_TIMEOUT(places->count(), count, WaitMs);
}

void TestDesktopSystem::folderIsRenamedInTheTree()
{
    DesktopWorld world;
    await(world.documents.createFolder(QString(), QStringLiteral("Drawings")));
    world.start();
    auto *const tree = world.find<QTreeView>(QStringLiteral("folders"));
    QTRY_COMPARE_WITH_TIMEOUT(tree->model()->rowCount(), 1, WaitMs);
    tree->setFocus();
    tree->setCurrentIndex(tree->model()->index(0, 0));
    QTest::keyClick(tree, Qt::Key_F2);
    auto *const editor = tree->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), QStringLiteral("Drawings"));
    editor->setText(QStringLiteral("Plans"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.names(), list("Plans"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(tree->model()->index(0, 0).data().toString(), QStringLiteral("Plans"),
                              WaitMs);
}

QTEST_MAIN(TestDesktopSystem)
#include "tst_desktop_system.moc"
