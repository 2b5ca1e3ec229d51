#include "ClientWorld.h"

#include <QCryptographicHash>

#include <document_model/DocumentConstants.h>
#include <document_model/VellRecordType.h>

// Every operation on documents, against the service.
class TestClientDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_world = std::make_unique<ClientWorld>(); }
    void cleanup() { m_world.reset(); }

    void foldersAreMadeListedAndCounted();
    void aPageTellsTheTotal();
    void aCopyHasTheContent();
    void theMd5OfAContentIsTold();
    void aTakenNameIsRefusedAtTheMomentOfTheChange();
    void renamingAsksTheServiceNotTheCache();
    void movingManyReportsEach();
    void deletedDocumentsComeBack();
    void theRecycleBinIsEmptied();
    void deletedDocumentsArePurged();
    void findAndFoldersAbove();
    void freeNamesAreFreeOnTheService();
    void marksAreSetAndSeen();
    void remarksAndLinksChangeWhatIsKnown();
    void anEarlierVersionIsMadeCurrent();
    void anEarlierVersionIsDeleted();
    void positionsAreKept();
    void sharesAreMadeListedAndEnded();
    void rightsAndHistory();
    void recentFiles();
    void theStoreLearnsOfEveryChange();

private:
    VellDocument folder(const QString &name, const QString &parentId = {})
    {
        return await(m_world->documents.createFolder(parentId, name));
    }

    std::unique_ptr<ClientWorld> m_world;
};

void TestClientDocuments::foldersAreMadeListedAndCounted()
{
    const VellDocument a = folder(QStringLiteral("a"));
    folder(QStringLiteral("b"), a._id);
    QCOMPARE(m_world->names(), QStringList{QStringLiteral("a")});
    QCOMPARE(m_world->names(a._id), QStringList{QStringLiteral("b")});
    QCOMPARE(await(m_world->documents.count(VellDocumentConditon())), 1);
    QCOMPARE(await(m_world->documents.document(a._id)).name, QStringLiteral("a"));
    QCOMPARE(waitForEnd(m_world->documents.document(QStringLiteral("unknown"))).kind,
             VellError::Kind::NotFound);
}

void TestClientDocuments::aPageTellsTheTotal()
{
    for (int i = 0; i < 5; ++i)
        m_world->store(QStringLiteral("%1.txt").arg(i));
    VellDocumentSort sort;
    sort.isDefault = false;
    sort.sortField = KEY_NAME;
    sort.isAsc = true;
    const VellPage page = await(m_world->documents.page(VellDocumentConditon(), sort, 3, 10));
    QCOMPARE(page.total, 5);
    QCOMPARE(page.skip, 3);
    QCOMPARE(page.documents.size(), 2);
    QCOMPARE(page.documents.at(0).name, QStringLiteral("3.txt"));
}

void TestClientDocuments::aCopyHasTheContent()
{
    ClientWorld world;
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("a.txt"))._id));
    const QString folder = await(world.documents.createFolder({}, QStringLiteral("d")))._id;
    const VellDocument copy = await(world.documents.copy(stored, folder, QStringLiteral("b.txt")));
    QVERIFY(copy._id != stored._id);
    QCOMPARE(copy.name, QStringLiteral("b.txt"));
    QCOMPARE(copy.fileId, stored.fileId);
    QCOMPARE(world.names(folder), QStringList{QStringLiteral("b.txt")});
    QCOMPARE(world.documents.store()->document(copy._id)->name, copy.name);
    QCOMPARE(waitForEnd(world.documents.copy(stored, folder, QStringLiteral("b.txt"))).kind,
             VellError::Kind::NameTaken);
}

void TestClientDocuments::theMd5OfAContentIsTold()
{
    ClientWorld world;
    for (const QByteArray &content :
         {QByteArray("content"), QByteArray(3000000, 'x'), QByteArray()}) {
        const VellDocument stored = await(
            world.documents.document(world.store(QString::number(content.size()), content)._id));
        QCOMPARE(await(world.documents.contentMd5(stored.fileId)),
                 QString::fromLatin1(
                     QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex()));
    }
    QCOMPARE(waitForEnd(world.documents.contentMd5(QStringLiteral("nothing"))).kind,
             VellError::Kind::NotFound);
}

void TestClientDocuments::aTakenNameIsRefusedAtTheMomentOfTheChange()
{
    m_world->store(QStringLiteral("plan"));
    QCOMPARE(waitForEnd(m_world->documents.createFolder({}, QStringLiteral("plan"))).kind,
             VellError::Kind::NameTaken);
    QCOMPARE(m_world->names().size(), 1);
}

void TestClientDocuments::renamingAsksTheServiceNotTheCache()
{
    const VellDocument a = m_world->store(QStringLiteral("a"));
    const VellDocument b = m_world->store(QStringLiteral("b"));
    m_world->names(); // known from now on
    m_world->renameElsewhere(b, QStringLiteral("c"));
    QCOMPARE(waitForEnd(m_world->documents.rename(a._id, QStringLiteral("c"))).kind,
             VellError::Kind::NameTaken);
    QCOMPARE(await(m_world->documents.rename(a._id, QStringLiteral("b"))).name,
             QStringLiteral("b"));
    QCOMPARE(await(m_world->documents.rename(a._id, QStringLiteral("b"))).name,
             QStringLiteral("b"));
    QCOMPARE(m_world->names(), QStringList({QStringLiteral("b"), QStringLiteral("c")}));
}

void TestClientDocuments::movingManyReportsEach()
{
    const VellDocument target = folder(QStringLiteral("target"));
    m_world->store(QStringLiteral("3"), "content", target._id);
    QStringList ids;
    for (int i = 0; i < 8; ++i)
        ids.append(m_world->store(QString::number(i))._id);
    ids.append(target._id); // into itself
    const VellBulkResult result = await(m_world->documents.move(ids, target._id));
    QCOMPARE(result.succeeded.size(), 7);
    QCOMPARE(result.documents.size(), 7);
    QCOMPARE(result.failed.size(), 2);
    QCOMPARE(result.failed.value(ids.at(3)).kind, VellError::Kind::NameTaken);
    QCOMPARE(result.failed.value(target._id).kind, VellError::Kind::ChangedMeanwhile);
    QCOMPARE(m_world->names(target._id).size(), 8);
}

void TestClientDocuments::deletedDocumentsComeBack()
{
    const QString a = m_world->store(QStringLiteral("a"))._id;
    const QString b = m_world->store(QStringLiteral("b"))._id;
    m_world->names();
    const VellBulkResult removed =
        await(m_world->documents.remove({a, b, QStringLiteral("unknown")}));
    QCOMPARE(removed.succeeded.size(), 2);
    QCOMPARE(removed.failed.value(QStringLiteral("unknown")).kind, VellError::Kind::NotFound);
    QVERIFY(!m_world->documents.store()->document(a));
    m_world->store(QStringLiteral("b"));
    VellDocumentConditon bin;
    bin.category = QStringLiteral("recycle");
    QCOMPARE(await(m_world->documents.count(bin)), 2);
    QCOMPARE(await(m_world->documents.page(bin, VellDocumentSort(), 0, 10)).total, 2);
    const VellBulkResult restored = await(m_world->documents.restore({a, b}));
    QCOMPARE(restored.succeeded.size(), 2);
    QCOMPARE(restored.sameNamed, QStringList{b});
    QVERIFY(m_world->documents.store()->document(a));
    QCOMPARE(m_world->names().size(), 3);
}

void TestClientDocuments::theRecycleBinIsEmptied()
{
    await(m_world->documents.remove({m_world->store(QStringLiteral("a"))._id}));
    QVERIFY(await(m_world->documents.emptyRecycleBin(QStringLiteral("recycle"))));
    VellDocumentConditon bin;
    bin.category = QStringLiteral("recycle");
    QCOMPARE(await(m_world->documents.count(bin)), 0);
}

void TestClientDocuments::deletedDocumentsArePurged()
{
    const QString a = m_world->store(QStringLiteral("a"))._id;
    const QString b = m_world->store(QStringLiteral("b"))._id;
    const QString present = m_world->store(QStringLiteral("present"))._id;
    await(m_world->documents.remove({a, b}));
    const VellBulkResult purged =
        await(m_world->documents.purge({a, present, QStringLiteral("unknown")}));
    QCOMPARE(purged.succeeded, QStringList{a});
    QCOMPARE(purged.failed.value(present).httpStatus, 409);
    QCOMPARE(purged.failed.value(QStringLiteral("unknown")).kind, VellError::Kind::NotFound);
    VellDocumentConditon bin;
    bin.category = QStringLiteral("recycle");
    const QList<VellDocument> left = await(m_world->documents.list(bin));
    QCOMPARE(left.size(), 1);
    QCOMPARE(left.constFirst()._id, b);
    QCOMPARE(m_world->names(), QStringList{QStringLiteral("present")});
}

void TestClientDocuments::findAndFoldersAbove()
{
    const VellDocument a = folder(QStringLiteral("a"));
    const VellDocument b = folder(QStringLiteral("b"), a._id);
    const VellDocument file = m_world->store(QStringLiteral("plan.dwg"), "content", b._id);
    const auto found = await(m_world->documents.find(b._id, QStringLiteral("plan.dwg")));
    QVERIFY(found);
    QCOMPARE(found->_id, file._id);
    QVERIFY(!await(m_world->documents.find(a._id, QStringLiteral("plan.dwg"))));
    const QList<VellDocument> folders = await(m_world->documents.foldersAbove(file._id));
    QCOMPARE(folders.size(), 2);
    QCOMPARE(folders.at(0)._id, a._id);
    QCOMPARE(folders.at(1)._id, b._id);
    QVERIFY(await(m_world->documents.foldersAbove(a._id)).isEmpty());
}

void TestClientDocuments::freeNamesAreFreeOnTheService()
{
    m_world->store(QStringLiteral("plan.dwg"));
    QCOMPARE(await(m_world->documents.freeName({}, QStringLiteral("plan.dwg"), {})),
             QStringLiteral("plan(2).dwg"));
    QCOMPARE(await(m_world->documents.freeName({}, QStringLiteral("plan.dwg"), {},
                                               {QStringLiteral("plan(2).dwg")})),
             QStringLiteral("plan(3).dwg"));
    QCOMPARE(await(m_world->documents.freeName({}, QStringLiteral("other.dwg"), {})),
             QStringLiteral("other.dwg"));
}

void TestClientDocuments::marksAreSetAndSeen()
{
    const QString id = m_world->store(QStringLiteral("a"))._id;
    m_world->names();
    QVERIFY(!await(m_world->documents.isFavorite(id)));
    QVERIFY(await(m_world->documents.setFavorite(id, true)));
    QVERIFY(await(m_world->documents.isFavorite(id)));
    QVERIFY(m_world->documents.store()->document(id)->favorite);
    QCOMPARE(await(m_world->documents.favorites(VellDocumentConditon(), VellDocumentSort())).size(),
             1);
    QVERIFY(await(m_world->documents.setFavorite(id, false)));
    QVERIFY(!await(m_world->documents.isFavorite(id)));

    QVERIFY(await(m_world->documents.setFrequent(id, true)));
    VellDocumentConditon frequent;
    frequent.isFrequent = true;
    QCOMPARE(await(m_world->documents.list(frequent)).size(), 1);
    QVERIFY(await(m_world->documents.setRecent(id, true)));
    VellDocumentConditon recent;
    recent.recordType = VellRecordType::Recent;
    QCOMPARE(await(m_world->documents.list(recent)).size(), 1);
}

void TestClientDocuments::remarksAndLinksChangeWhatIsKnown()
{
    VellDocument document = m_world->store(QStringLiteral("a"));
    m_world->names();
    QVERIFY(await(m_world->documents.setRemark(document._id, QStringLiteral("checked"))));
    QCOMPARE(m_world->documents.store()->document(document._id)->remark, QStringLiteral("checked"));
    QCOMPARE(await(m_world->documents.document(document._id)).remark, QStringLiteral("checked"));

    document.entity.insert(QStringLiteral("pipe"), {QStringLiteral("guid")});
    await(m_world->documents.setLinks(document));
    const QList<VellDocumentLite> linked =
        await(m_world->documents.linkedTo(QStringLiteral("guid")));
    QCOMPARE(linked.size(), 1);

    const QList<VellDocument> versions = await(m_world->documents.history(document._id));
    QCOMPARE(versions.size(), 1);
    QVERIFY(
        await(m_world->documents.setVersionRemark(versions.at(0)._id, QStringLiteral("first"))));
    QCOMPARE(await(m_world->documents.history(document._id)).at(0).remark, QStringLiteral("first"));
}

void TestClientDocuments::anEarlierVersionIsMadeCurrent()
{
    const VellDocument document = m_world->store(QStringLiteral("a"), "first");
    const VellDocument other = m_world->store(QStringLiteral("b"), "second");
    await(m_world->documents.makeCurrent(document._id, other.fileId));
    const VellDocument back = await(m_world->documents.makeCurrent(document._id, document.fileId));
    QCOMPARE(back.fileId, document.fileId);
    QCOMPARE(m_world->documents.store()->document(document._id)->fileId, document.fileId);
    QCOMPARE(await(m_world->documents.history(document._id)).size(), 3);
}

void TestClientDocuments::anEarlierVersionIsDeleted()
{
    const VellDocument document = m_world->store(QStringLiteral("a"), "first");
    const VellDocument other = m_world->store(QStringLiteral("b"), "second");
    await(m_world->documents.makeCurrent(document._id, other.fileId));
    const QList<VellDocument> versions = await(m_world->documents.history(document._id));
    QVERIFY(await(m_world->documents.removeVersion(versions.at(1)._id)));
    const QList<VellDocument> left = await(m_world->documents.history(document._id));
    QCOMPARE(left.size(), 1);
    QCOMPARE(left.constFirst()._id, versions.constFirst()._id);
    QCOMPARE(waitForEnd(m_world->documents.removeVersion(left.constFirst()._id)).httpStatus, 409);
    QCOMPARE(waitForEnd(m_world->documents.removeVersion(versions.at(1)._id)).kind,
             VellError::Kind::NotFound);
}

void TestClientDocuments::positionsAreKept()
{
    const QString a = m_world->store(QStringLiteral("a"))._id;
    const QString b = m_world->store(QStringLiteral("b"))._id;
    m_world->names();
    QSignalSpy changed(m_world->documents.store(), &VellDocumentStore::folderChanged);
    QVERIFY(await(m_world->documents.setOrder({{a, 2}, {b, 1}})));
    QCOMPARE(changed.size(), 1);
    const VellPage page =
        await(m_world->documents.page(VellDocumentConditon(), VellDocumentSort(), 0, 10));
    QCOMPARE(page.documents.at(0)._id, b);
}

void TestClientDocuments::sharesAreMadeListedAndEnded()
{
    const QString id = m_world->store(QStringLiteral("a"))._id;
    const QDateTime end = QDateTime::currentDateTimeUtc().addDays(3);
    const VellShare share = await(m_world->documents.share({id}, end, true));
    QVERIFY(!share.code.isEmpty());
    QVERIFY(share.address.startsWith(m_world->service.baseApi()));
    QVERIFY(share.address.endsWith(share.code));
    const QList<VellShare> shares = await(m_world->documents.shares());
    QCOMPARE(shares.size(), 1);
    QCOMPARE(shares.at(0).documents.at(0)._id, id);
    QVERIFY(shares.at(0).isDownloadAllowed);
    QVERIFY(qAbs(shares.at(0).expiresAt.secsTo(end)) < 2);
    QVERIFY(await(m_world->documents.revokeShare(shares.at(0).id)));
    QVERIFY(await(m_world->documents.shares()).isEmpty());
    QCOMPARE(waitForEnd(m_world->documents.revokeShare(QStringLiteral("unknown"))).kind,
             VellError::Kind::NotFound);
}

void TestClientDocuments::rightsAndHistory()
{
    const QString id = m_world->store(QStringLiteral("a"))._id;
    for (const VellRight right : {VellRight::Download, VellRight::Upload, VellRight::Edit,
                                  VellRight::Delete, VellRight::EditOwn, VellRight::DeleteOwn})
        QVERIFY(await(m_world->documents.may(right, id, {})));
    QCOMPARE(
        waitForEnd(m_world->documents.may(VellRight::Edit, QStringLiteral("unknown"), {})).kind,
        VellError::Kind::NotFound);
    QCOMPARE(await(m_world->documents.password(id)), QString());
    QCOMPARE(waitForEnd(m_world->documents.history(QStringLiteral("unknown"))).kind,
             VellError::Kind::NotFound);
}

void TestClientDocuments::recentFiles()
{
    m_world->store(QStringLiteral("a"));
    m_world->store(QStringLiteral("b"));
    const QList<VellDocument> files = await(m_world->documents.recent({}));
    QCOMPARE(files.size(), 2);
}

void TestClientDocuments::theStoreLearnsOfEveryChange()
{
    VellDocumentStore *const store = m_world->documents.store();
    QSignalSpy folders(store, &VellDocumentStore::folderChanged);
    const VellDocument a = folder(QStringLiteral("a"));
    QCOMPARE(store->folderName(a._id), QStringLiteral("a"));
    QCOMPARE(folders.size(), 1);
    await(m_world->documents.rename(a._id, QStringLiteral("b")));
    QCOMPARE(store->folderName(a._id), QStringLiteral("b"));
    const QString file = m_world->store(QStringLiteral("file"))._id;
    m_world->names();
    folders.clear();
    await(m_world->documents.move({file}, a._id));
    QCOMPARE(folders.size(), 2);
    QCOMPARE(store->document(file)->parentId, a._id);
    m_world->session.openProject(QStringLiteral("p2"));
    QVERIFY(!store->document(file));
}

QTEST_GUILESS_MAIN(TestClientDocuments)
#include "tst_client_documents.moc"
