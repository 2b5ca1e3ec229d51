#include <document_model/DocumentJson.h>
#include <document_model/VellDocument.h>
#include <document_model/VellDocumentLite.h>

#include <QTest>

class TestDocumentRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshRecordIsAFolderOfDefaults();
    void aCopyOwnsItsSubtree();
    void theMetaTypesAreRegisteredByName();
    void aChangeCodeHasFourBytes();
    void aFreshLiteRecordIsEmpty();
    void aLiteRecordReadsTheServicesForm_data();
    void aLiteRecordReadsTheServicesForm();
};

void TestDocumentRecord::aFreshRecordIsAFolderOfDefaults()
{
    const VellDocument doc;
    QCOMPARE(doc.type, QString("dir"));
    QCOMPARE(doc.order, -1);
    QCOMPARE(doc.hostType, 0);
    QCOMPARE(doc.recycle, 0);
    QCOMPARE(doc.favorite, false);
    QCOMPARE(doc.fileSize, Q_INT64_C(0));
    for (const QString &text :
         {doc._id, doc.name, doc.parentId, doc.documentId, doc.hostId, doc.category, doc.projectId,
          doc.status, doc.fileId, doc.filePath, doc.suffix, doc.pwd, doc.previewId, doc.remark,
          doc.updatedBy, doc.createdBy})
        QVERIFY(text.isEmpty());
    for (const QDateTime &time :
         {doc.downloadTime, doc.updatedAt, doc.createdAt, doc.historyUpdatedAt})
        QVERIFY(!time.isValid());
    QVERIFY(doc.auths.isEmpty());
    QVERIFY(doc.children.isEmpty());
    QVERIFY(doc.codeList.isEmpty());
    QVERIFY(doc.entity.isEmpty());
}

void TestDocumentRecord::aCopyOwnsItsSubtree()
{
    VellDocument leaf;
    leaf.name = "leaf";
    VellDocument folder;
    folder.children.append(leaf);
    VellDocument root;
    root.children.append(folder);
    root.auths.insert("edit", true);

    VellDocument copy = root;
    copy.children[0].children[0].name = "renamed";
    copy.auths.clear();

    QCOMPARE(root.children[0].children[0].name, QString("leaf"));
    QCOMPARE(root.auths.size(), 1);
    QCOMPARE(copy.children[0].children[0].name, QString("renamed"));
}

void TestDocumentRecord::theMetaTypesAreRegisteredByName()
{
    // A linker may leave out a library of which a program calls nothing.
    VellDocument doc;
    VellPubDoc::jsonToDocObject(QJsonObject(), doc);

    QVERIFY(QMetaType::type("VellDocument") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("VellDocumentList") != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("VellDocumentList"), qMetaTypeId<QList<VellDocument>>());
}

void TestDocumentRecord::aChangeCodeHasFourBytes()
{
    QCOMPARE(sizeof(VellDocumentChange), std::size_t(4));
    QCOMPARE(static_cast<qint32>(VellDocumentChange::EntityLinks), 0);
}

void TestDocumentRecord::aFreshLiteRecordIsEmpty()
{
    const VellDocumentLite lite;
    QVERIFY(lite._id.isEmpty() && lite.name.isEmpty() && lite.suffix.isEmpty());
    QVERIFY(lite.createdAt.isEmpty() && lite.createdBy.isEmpty());
    QCOMPARE(lite.fileSize, Q_INT64_C(0));
}

void TestDocumentRecord::aLiteRecordReadsTheServicesForm_data()
{
    QTest::addColumn<QJsonValue>("sizeOnTheWire");
    QTest::addColumn<qint64>("fileSize");

    QTest::newRow("small") << QJsonValue(4096) << Q_INT64_C(4096);
    QTest::newRow("largest 32-bit number") << QJsonValue(2147483647) << Q_INT64_C(2147483647);
    QTest::newRow("2 GiB is out of range") << QJsonValue(Q_INT64_C(2147483648)) << Q_INT64_C(0);
    QTest::newRow("a fraction is no size") << QJsonValue(1.5) << Q_INT64_C(0);
    QTest::newRow("digits in a text") << QJsonValue("4096") << Q_INT64_C(0);
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << Q_INT64_C(0);
}

void TestDocumentRecord::aLiteRecordReadsTheServicesForm()
{
    QFETCH(QJsonValue, sizeOnTheWire);
    QFETCH(qint64, fileSize);
    const VellDocumentLite lite(QJsonObject{
        {"_id", "d1"},
        {"name", "plan.dwg"},
        {"fileSize", sizeOnTheWire},
        {"suffix", "dwg"},
        {"createdAt", "not a date, only carried"},
        {"createdBy", "u1"},
    });
    QCOMPARE(lite._id, QString("d1"));
    QCOMPARE(lite.name, QString("plan.dwg"));
    QCOMPARE(lite.fileSize, fileSize);
    QCOMPARE(lite.suffix, QString("dwg"));
    QCOMPARE(lite.createdAt, QString("not a date, only carried"));
    QCOMPARE(lite.createdBy, QString("u1"));
}

QTEST_GUILESS_MAIN(TestDocumentRecord)
#include "tst_document_record.moc"
