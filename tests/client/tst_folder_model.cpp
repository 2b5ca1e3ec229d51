#include "OtherUser.h"

#include <documents/VellDocumentStore.h>
#include <models/VellFolderModel.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class TestFolderModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void fetchesWhatIsOpened();
    void sortsAsPeopleDo();
    void filesAreNotShown();
    void aFolderWithoutFoldersHasNoneAfterwards();
    void newFoldersAppear();
    void renamedFoldersMove();
    void movedFoldersKeepWhatIsBelow();
    void removedFoldersGo();
    void otherUsersFoldersAppearOnReload();
    void expandedFoldersStayOnReload();
    void aFailureIsToldOnce();
    void anotherProjectEmptiesIt();
    void onlyOneCategory();

private:
    QString make(const QString &name, const QString &parentId = {})
    {
        return await(m_world->documents.createFolder(parentId, name))._id;
    }
    void open(const QModelIndex &parent = {});
    QStringList names(const QModelIndex &parent = {}) const;

    std::unique_ptr<ClientWorld> m_world;
    std::unique_ptr<VellFolderModel> m_model;
};

void TestFolderModel::init()
{
    m_world = std::make_unique<ClientWorld>();
    m_model = std::make_unique<VellFolderModel>(&m_world->documents);
}

void TestFolderModel::cleanup()
{
    m_model.reset();
    m_world.reset();
}

//! As a view does it. The tester, which fetches the first folders itself, watches from then on.
void TestFolderModel::open(const QModelIndex &parent)
{
    QSignalSpy loaded(m_model.get(), &VellFolderModel::loaded);
    QVERIFY(m_model->hasChildren(parent));
    QVERIFY(m_model->canFetchMore(parent));
    m_model->fetchMore(parent);
    QVERIFY(!m_model->canFetchMore(parent));
    QVERIFY(m_model->isLoading());
    QVERIFY(loaded.wait(WaitMs));
    // Folders above, which have changed just before, may still be fetched again.
    QTRY_VERIFY_WITH_TIMEOUT(!m_model->isLoading(), WaitMs);
}

QStringList TestFolderModel::names(const QModelIndex &parent) const
{
    QStringList names;
    for (int row = 0; row < m_model->rowCount(parent); ++row)
        names.append(m_model->index(row, 0, parent).data().toString());
    return names;
}

void TestFolderModel::fetchesWhatIsOpened()
{
    const QString a = make(QStringLiteral("a"));
    const QString b = make(QStringLiteral("b"), a);
    QCOMPARE(m_model->rowCount(), 0);
    open();
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
    const QModelIndex index = m_model->index(0, 0);
    QCOMPARE(index.data(VellModelRole::Id).toString(), a);
    QCOMPARE(m_model->rowCount(index), 0);
    open(index);
    QCOMPARE(names(index), QStringList(QStringLiteral("b")));
    QCOMPARE(m_model->folder(m_model->indexOf(b))->name, QStringLiteral("b"));
    QCOMPARE(m_model->parent(m_model->indexOf(b)), index);
    QStringList opened = m_model->openedFolders();
    opened.sort();
    QCOMPARE(opened, QStringList({QString(), a}));
}

void TestFolderModel::sortsAsPeopleDo()
{
    const QStringList inOrder{QStringLiteral("a2"), QStringLiteral("a10"), QStringLiteral("B"),
                              QStringLiteral("c")};
    for (const int i : {3, 1, 2, 0})
        make(inOrder.at(i));
    open();
    QCOMPARE(names(), inOrder);
}

void TestFolderModel::filesAreNotShown()
{
    m_world->store(QStringLiteral("file"));
    open();
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(!m_model->hasChildren());
    await(m_world->documents.list(VellDocumentConditon()));
    QCOMPARE(m_model->rowCount(), 0);
}

void TestFolderModel::aFolderWithoutFoldersHasNoneAfterwards()
{
    make(QStringLiteral("a"));
    open();
    QSignalSpy layouts(m_model.get(), &QAbstractItemModel::layoutChanged);
    const QModelIndex a = m_model->index(0, 0);
    open(a);
    QVERIFY(!m_model->hasChildren(a));
    QCOMPARE(layouts.size(), 1); // so that the view takes the sign away
}

void TestFolderModel::newFoldersAppear()
{
    make(QStringLiteral("b"));
    open();
    const QAbstractItemModelTester tester(m_model.get());
    const QPersistentModelIndex b = m_model->index(0, 0);
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    make(QStringLiteral("a"));
    QCOMPARE(names(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(b.row(), 1);
}

void TestFolderModel::renamedFoldersMove()
{
    const QString a = make(QStringLiteral("a"));
    make(QStringLiteral("b"));
    make(QStringLiteral("c"));
    open();
    const QAbstractItemModelTester tester(m_model.get());
    const QPersistentModelIndex index = m_model->indexOf(a);
    QSignalSpy moved(m_model.get(), &QAbstractItemModel::rowsMoved);
    await(m_world->documents.rename(a, QStringLiteral("bb")));
    QCOMPARE(names(),
             QStringList({QStringLiteral("b"), QStringLiteral("bb"), QStringLiteral("c")}));
    QCOMPARE(index.row(), 1);
    await(m_world->documents.rename(a, QStringLiteral("aa")));
    QCOMPARE(index.row(), 0);
    await(m_world->documents.rename(a, QStringLiteral("d")));
    QCOMPARE(index.row(), 2);
    QCOMPARE(moved.size(), 3);
    await(m_world->documents.rename(a, QStringLiteral("e")));
    QCOMPARE(index.data().toString(), QStringLiteral("e"));
    QCOMPARE(moved.size(), 3); // it is the last one already
}

void TestFolderModel::movedFoldersKeepWhatIsBelow()
{
    const QString a = make(QStringLiteral("a"));
    const QString b = make(QStringLiteral("b"));
    const QString below = make(QStringLiteral("below"), b);
    m_model = std::make_unique<VellFolderModel>(&m_world->documents); // knows of no change
    open();
    open(m_model->indexOf(a));
    open(m_model->indexOf(b));
    const QAbstractItemModelTester tester(m_model.get());
    const QPersistentModelIndex index = m_model->indexOf(below);
    await(m_world->documents.move({b}, a));
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
    QVERIFY(index.isValid());
    QCOMPARE(index.parent(), m_model->indexOf(b));
    QCOMPARE(m_model->parent(m_model->indexOf(b)), m_model->indexOf(a));
}

void TestFolderModel::removedFoldersGo()
{
    const QString a = make(QStringLiteral("a"));
    const QString below = make(QStringLiteral("below"), a);
    open();
    open(m_model->indexOf(a));
    const QAbstractItemModelTester tester(m_model.get());
    await(m_world->documents.remove({a}));
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(!m_model->indexOf(below).isValid());
    await(m_world->documents.restore({a}));
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList(QStringLiteral("a")), WaitMs);
}

void TestFolderModel::otherUsersFoldersAppearOnReload()
{
    const QString a = make(QStringLiteral("a"));
    make(QStringLiteral("c"));
    open();
    const QAbstractItemModelTester tester(m_model.get());
    OtherUser other(*m_world);
    await(other.documents.createFolder(QString(), QStringLiteral("b")));
    await(other.documents.remove({a}));
    m_model->reload();
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList({QStringLiteral("b"), QStringLiteral("c")}),
                              WaitMs);
}

void TestFolderModel::expandedFoldersStayOnReload()
{
    const QString a = make(QStringLiteral("a"));
    make(QStringLiteral("below"), a);
    open();
    open(m_model->indexOf(a));
    const QAbstractItemModelTester tester(m_model.get());
    const QPersistentModelIndex index = m_model->index(0, 0, m_model->indexOf(a));
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy loaded(m_model.get(), &VellFolderModel::loaded);
    m_model->reload();
    QTRY_VERIFY_WITH_TIMEOUT(loaded.size() >= 2 && !m_model->isLoading(), WaitMs);
    QVERIFY(index.isValid());
    QVERIFY(resets.isEmpty() && removed.isEmpty());
}

void TestFolderModel::aFailureIsToldOnce()
{
    m_world->service.addFault([] {
        FaultRule rule;
        QString error;
        if (!FaultRule::parse(QStringLiteral("status=503,times=100"), &rule, &error))
            qFatal("%s", qPrintable(error));
        return rule;
    }());
    QSignalSpy failed(m_model.get(), &VellFolderModel::loadFailed);
    m_model->fetchMore({});
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(1).value<VellError>().httpStatus, 503);
    QVERIFY(!m_model->canFetchMore({})); // a view would ask again and again
    m_world->service.clearFaults();
    make(QStringLiteral("a"));
    m_model->reload();
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList(QStringLiteral("a")), WaitMs);
    QCOMPARE(failed.size(), 1);
}

void TestFolderModel::anotherProjectEmptiesIt()
{
    make(QStringLiteral("a"));
    open();
    m_model->reload();
    m_world->session.openProject(QStringLiteral("p2"));
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(!m_model->isLoading());
    QVERIFY(m_model->canFetchMore({}));
}

void TestFolderModel::onlyOneCategory()
{
    m_model = std::make_unique<VellFolderModel>(&m_world->documents, QStringLiteral("plans"));
    await(m_world->documents.createFolder({}, QStringLiteral("a"), QStringLiteral("plans")));
    await(m_world->documents.createFolder({}, QStringLiteral("b"), QStringLiteral("texts")));
    open();
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
    await(m_world->documents.createFolder({}, QStringLiteral("c"), QStringLiteral("texts")));
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
}

QTEST_MAIN(TestFolderModel)
#include "tst_folder_model.moc"
