#include <documents/VellDocumentStore.h>

#include <QSignalSpy>
#include <QTest>

// What is known of documents, and who is told of changes.
class TestClientDocumentStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNewIsTold();
    void whatIsAsBeforeIsNotTold();
    void everyVisibleFieldIsLookedAt_data();
    void everyVisibleFieldIsLookedAt();
    void aMoveChangesBothFolders();
    void aNewPositionChangesTheFolder();
    void removedDocumentsAreTold();
    void recordsWithoutAnIdentifierAreLeftOut();
    void everythingMayBeForgotten();
};

namespace {

VellDocument documentNamed(const QString &id, const QString &parentId = {})
{
    VellDocument document;
    document._id = id;
    document.name = id + QStringLiteral(".dwg");
    document.parentId = parentId;
    return document;
}

} // namespace

void TestClientDocumentStore::whatIsNewIsTold()
{
    VellDocumentStore store;
    QSignalSpy changed(&store, &VellDocumentStore::documentsChanged);
    store.insert({documentNamed(QStringLiteral("d1")), documentNamed(QStringLiteral("d2"))});
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).value<QList<VellDocument>>().size(), 2);
    QCOMPARE(store.folderName(QStringLiteral("d1")), QStringLiteral("d1.dwg"));
    QVERIFY(store.document(QStringLiteral("d2")));
    QVERIFY(!store.document(QStringLiteral("d3")));
    QCOMPARE(store.folderName(QStringLiteral("d3")), QString());
}

void TestClientDocumentStore::whatIsAsBeforeIsNotTold()
{
    VellDocumentStore store;
    store.insert({documentNamed(QStringLiteral("d1")), documentNamed(QStringLiteral("d2"))});
    QSignalSpy changed(&store, &VellDocumentStore::documentsChanged);
    VellDocument renamed = documentNamed(QStringLiteral("d2"));
    renamed.name = QStringLiteral("new");
    store.insert({documentNamed(QStringLiteral("d1")), renamed});
    QCOMPARE(changed.size(), 1);
    const auto told = changed.at(0).at(0).value<QList<VellDocument>>();
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.at(0).name, QStringLiteral("new"));
}

void TestClientDocumentStore::everyVisibleFieldIsLookedAt_data()
{
    QTest::addColumn<VellDocument>("after");
    const auto row = [](const char *name, const std::function<void(VellDocument &)> &change) {
        VellDocument after = documentNamed(QStringLiteral("d1"));
        change(after);
        QTest::newRow(name) << after;
    };
    row("name", [](VellDocument &d) { d.name = QStringLiteral("x"); });
    row("folder", [](VellDocument &d) { d.parentId = QStringLiteral("x"); });
    row("time", [](VellDocument &d) { d.updatedAt = QDateTime::currentDateTimeUtc(); });
    row("who", [](VellDocument &d) { d.updatedBy = QStringLiteral("x"); });
    row("content", [](VellDocument &d) { d.fileId = QStringLiteral("x"); });
    row("size", [](VellDocument &d) { d.fileSize = 5; });
    row("remark", [](VellDocument &d) { d.remark = QStringLiteral("x"); });
    row("position", [](VellDocument &d) { d.order = 5; });
    row("favorite", [](VellDocument &d) { d.favorite = true; });
    row("category", [](VellDocument &d) { d.category = QStringLiteral("x"); });
    row("recycle bin", [](VellDocument &d) { d.recycle = 1; });
    row("status", [](VellDocument &d) { d.status = QStringLiteral("x"); });
    row("rights", [](VellDocument &d) { d.auths.insert(QStringLiteral("edit"), true); });
    row("links", [](VellDocument &d) { d.entity.insert(QStringLiteral("pipe"), {}); });
    row("preview", [](VellDocument &d) { d.previewId = QStringLiteral("x"); });
}

void TestClientDocumentStore::everyVisibleFieldIsLookedAt()
{
    QFETCH(VellDocument, after);
    VellDocumentStore store;
    store.insert(documentNamed(QStringLiteral("d1")));
    QSignalSpy changed(&store, &VellDocumentStore::documentsChanged);
    store.insert(after);
    QCOMPARE(changed.size(), 1);
}

void TestClientDocumentStore::aMoveChangesBothFolders()
{
    VellDocumentStore store;
    store.insert(documentNamed(QStringLiteral("d1"), QStringLiteral("from")));
    QSignalSpy folders(&store, &VellDocumentStore::folderChanged);
    store.insert(documentNamed(QStringLiteral("d1"), QStringLiteral("to")));
    QStringList told;
    for (const QVariantList &arguments : qAsConst(folders))
        told.append(arguments.at(0).toString());
    told.sort();
    QCOMPARE(told, QStringList({QStringLiteral("from"), QStringLiteral("to")}));
}

void TestClientDocumentStore::aNewPositionChangesTheFolder()
{
    VellDocumentStore store;
    VellDocument document = documentNamed(QStringLiteral("d1"), QStringLiteral("f"));
    store.insert(document);
    QSignalSpy folders(&store, &VellDocumentStore::folderChanged);
    document.order = 7;
    store.insert(document);
    QCOMPARE(folders.size(), 1);
    QCOMPARE(folders.at(0).at(0).toString(), QStringLiteral("f"));
}

void TestClientDocumentStore::removedDocumentsAreTold()
{
    VellDocumentStore store;
    store.insert(documentNamed(QStringLiteral("d1"), QStringLiteral("f")));
    QSignalSpy removed(&store, &VellDocumentStore::documentsRemoved);
    QSignalSpy folders(&store, &VellDocumentStore::folderChanged);
    store.remove({QStringLiteral("d1"), QStringLiteral("unknown")});
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(0).toStringList(),
             QStringList({QStringLiteral("d1"), QStringLiteral("unknown")}));
    QCOMPARE(folders.size(), 1);
    QVERIFY(!store.document(QStringLiteral("d1")));
    store.remove({});
    QCOMPARE(removed.size(), 1);
}

void TestClientDocumentStore::recordsWithoutAnIdentifierAreLeftOut()
{
    VellDocumentStore store;
    QSignalSpy changed(&store, &VellDocumentStore::documentsChanged);
    store.insert(VellDocument());
    QVERIFY(changed.isEmpty());
    QVERIFY(!store.document(QString()));
}

void TestClientDocumentStore::everythingMayBeForgotten()
{
    VellDocumentStore store;
    store.insert(documentNamed(QStringLiteral("d1")));
    QSignalSpy cleared(&store, &VellDocumentStore::cleared);
    store.clear();
    QCOMPARE(cleared.size(), 1);
    QVERIFY(!store.document(QStringLiteral("d1")));
}

QTEST_GUILESS_MAIN(TestClientDocumentStore)
#include "tst_client_document_store.moc"
