#include <document_model/DocumentConversions.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Every field differs from its default.
VellDocument filledRecord()
{
    VellDocument doc;
    doc._id = QStringLiteral("id");
    doc.parentId = QStringLiteral("parent");
    doc.name = QStringLiteral("name");
    doc.documentId = QStringLiteral("documentId");
    doc.hostId = QStringLiteral("hostId");
    doc.hostType = 3;
    doc.category = QStringLiteral("category");
    doc.projectId = QStringLiteral("projectId");
    doc.order = 7;
    doc.favorite = true;
    doc.type = QStringLiteral("other");
    doc.status = QStringLiteral("status");
    doc.fileId = QStringLiteral("fileId");
    doc.filePath = QStringLiteral("filePath");
    doc.fileSize = 11;
    doc.suffix = QStringLiteral("suffix");
    doc.pwd = QStringLiteral("pwd");
    doc.previewId = QStringLiteral("previewId");
    doc.remark = QStringLiteral("remark");
    doc.auths.insert(QStringLiteral("edit"), true);
    doc.recycle = 1;
    doc.children.append(VellDocument());
    doc.codeList.append(VellDocumentChange::EntityLinks);
    doc.entity.insert(QStringLiteral("task"), {QStringLiteral("t1")});
    doc.updatedBy = QStringLiteral("updatedBy");
    doc.createdBy = QStringLiteral("createdBy");
    doc.updatedAt = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    doc.createdAt = QDateTime(QDate(2020, 2, 3), QTime(4, 5, 6), Qt::UTC);
    doc.downloadTime = QDateTime(QDate(2020, 3, 4), QTime(5, 6, 7), Qt::UTC);
    doc.historyUpdatedAt = QDateTime(QDate(2020, 4, 5), QTime(6, 7, 8), Qt::UTC);
    return doc;
}

// All fields, one in each line, so that a failing comparison shows which one differs.
QString fieldText(const VellDocument &doc)
{
    QStringList lines;
    lines << doc._id << doc.name << doc.parentId << doc.documentId << doc.hostId
          << QString::number(doc.hostType) << doc.category << doc.projectId
          << QString::number(doc.order) << QString::number(doc.favorite) << doc.type << doc.status
          << doc.fileId << doc.filePath << QString::number(doc.fileSize) << doc.suffix << doc.pwd
          << doc.previewId << doc.remark << doc.downloadTime.toString(Qt::ISODateWithMs)
          << QString::number(doc.auths.size()) << QString::number(doc.recycle)
          << QString::number(doc.children.size()) << QString::number(doc.codeList.size())
          << QString::number(doc.entity.size()) << doc.updatedAt.toString(Qt::ISODateWithMs)
          << doc.updatedBy << doc.createdAt.toString(Qt::ISODateWithMs) << doc.createdBy
          << doc.historyUpdatedAt.toString(Qt::ISODateWithMs);
    return lines.join(QLatin1Char('\n'));
}

VellDocumentLite liteRecord()
{
    VellDocumentLite lite;
    lite._id = QStringLiteral("lite id");
    lite.name = QStringLiteral("总图.dwg");
    lite.fileSize = Q_INT64_C(5368709120);
    lite.suffix = QStringLiteral("dwg");
    lite.createdAt = QStringLiteral("2020-05-31T08:00:00.123Z");
    lite.createdBy = QStringLiteral("user");
    return lite;
}

void writeFile(const QString &path, int bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(QByteArray(bytes, 'x')), qint64(bytes));
}

} // namespace

class TestDocumentConversions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liteRecordFillsSixFieldsAndNoOther();
    void unreadableCreationTimeOfALiteRecordIsInvalid();
    void liteListIsAppendedWithDefaultsEachTime();
    void documentFillsAllSixFieldsOfALiteRecord();
    void invalidCreationTimeGivesEmptyText();
    void conversionThereAndBackKeepsTheSixFields();
    void localFileFillsFiveFieldsAndNoOther();
    void localEntryGivesNameSuffixAndType_data();
    void localEntryGivesNameSuffixAndType();
    void linkIsAlwaysAFile();
    void missingPathLeavesTheRecord();
    void pathIsKeptAsGiven();
    void treeKeepsEveryFieldOfARecord();
};

void TestDocumentConversions::liteRecordFillsSixFieldsAndNoOther()
{
    VellDocument expected = filledRecord();
    expected._id = QStringLiteral("lite id");
    expected.name = QStringLiteral("总图.dwg");
    expected.fileSize = Q_INT64_C(5368709120);
    expected.suffix = QStringLiteral("dwg");
    expected.createdAt = QDateTime(QDate(2020, 5, 31), QTime(8, 0, 0, 123), Qt::UTC);
    expected.createdBy = QStringLiteral("user");

    VellDocument doc = filledRecord();
    VellPubDoc::docLite2Document(liteRecord(), doc);
    QCOMPARE(fieldText(doc), fieldText(expected));
}

void TestDocumentConversions::unreadableCreationTimeOfALiteRecordIsInvalid()
{
    VellDocument doc = filledRecord();
    VellPubDoc::docLite2Document(VellDocumentLite(), doc);
    QVERIFY(!doc.createdAt.isValid());
    QCOMPARE(doc._id, QString());
    QCOMPARE(doc.fileSize, Q_INT64_C(0));
}

void TestDocumentConversions::liteListIsAppendedWithDefaultsEachTime()
{
    VellDocumentLite second = liteRecord();
    second._id = QStringLiteral("second");
    const QList<VellDocumentLite> lites{liteRecord(), second};

    QList<VellDocument> docs{filledRecord()};
    VellPubDoc::docLite2Document(lites, docs);
    QCOMPARE(docs.size(), 3);
    QCOMPARE(fieldText(docs.at(0)), fieldText(filledRecord()));
    QCOMPARE(docs.at(2)._id, QStringLiteral("second"));

    VellDocument expected;
    VellPubDoc::docLite2Document(liteRecord(), expected);
    QCOMPARE(fieldText(docs.at(1)), fieldText(expected));
    QCOMPARE(docs.at(1).type, QStringLiteral("dir"));
    QCOMPARE(docs.at(1).order, -1);

    VellPubDoc::docLite2Document(lites, docs);
    QCOMPARE(docs.size(), 5);
    VellPubDoc::docLite2Document(QList<VellDocumentLite>(), docs);
    QCOMPARE(docs.size(), 5);
}

void TestDocumentConversions::documentFillsAllSixFieldsOfALiteRecord()
{
    VellDocument doc = filledRecord();
    doc.fileSize = Q_INT64_C(5368709120);
    VellDocumentLite lite = liteRecord();
    VellPubDoc::document2DocLite(doc, lite);
    QCOMPARE(lite._id, QStringLiteral("id"));
    QCOMPARE(lite.name, QStringLiteral("name"));
    QCOMPARE(lite.fileSize, Q_INT64_C(5368709120));
    QCOMPARE(lite.suffix, QStringLiteral("suffix"));
    QCOMPARE(lite.createdAt, QStringLiteral("2020-02-03T04:05:06.000Z"));
    QCOMPARE(lite.createdBy, QStringLiteral("createdBy"));
}

void TestDocumentConversions::invalidCreationTimeGivesEmptyText()
{
    VellDocumentLite lite = liteRecord();
    VellPubDoc::document2DocLite(VellDocument(), lite);
    QCOMPARE(lite.createdAt, QString());
    QCOMPARE(lite._id, QString());
}

void TestDocumentConversions::conversionThereAndBackKeepsTheSixFields()
{
    VellDocument doc;
    VellPubDoc::docLite2Document(liteRecord(), doc);
    VellDocumentLite lite;
    VellPubDoc::document2DocLite(doc, lite);
    const VellDocumentLite expected = liteRecord();
    QCOMPARE(lite._id, expected._id);
    QCOMPARE(lite.name, expected.name);
    QCOMPARE(lite.fileSize, expected.fileSize);
    QCOMPARE(lite.suffix, expected.suffix);
    QCOMPARE(lite.createdAt, expected.createdAt);
    QCOMPARE(lite.createdBy, expected.createdBy);
}

void TestDocumentConversions::localFileFillsFiveFieldsAndNoOther()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("图 1.PDF"));
    writeFile(path, 4711);

    VellDocument expected = filledRecord();
    expected.filePath = path;
    expected.name = QStringLiteral("图 1.PDF");
    expected.fileSize = 4711;
    expected.suffix = QStringLiteral("PDF");
    expected.type = QStringLiteral("file");

    VellDocument fromInfo = filledRecord();
    VellPubDoc::getVellDocument(QFileInfo(path), fromInfo);
    QCOMPARE(fieldText(fromInfo), fieldText(expected));

    VellDocument fromPath = filledRecord();
    VellPubDoc::getVellDocument(path, fromPath);
    QCOMPARE(fieldText(fromPath), fieldText(expected));
}

void TestDocumentConversions::localEntryGivesNameSuffixAndType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<QString>("suffix");

    QTest::newRow("one dot") << QStringLiteral("plan.dwg") << false << QStringLiteral("dwg");
    QTest::newRow("two dots") << QStringLiteral("data.tar.gz") << false << QStringLiteral("gz");
    QTest::newRow("no dot") << QStringLiteral("README") << false << QString();
    QTest::newRow("dot in front") << QStringLiteral(".profile") << false
                                  << QStringLiteral("profile");
    QTest::newRow("dot at the end") << QStringLiteral("odd.") << false << QString();
    QTest::newRow("folder") << QStringLiteral("drawings") << true << QString();
    QTest::newRow("folder with a dot") << QStringLiteral("v1.2") << true << QStringLiteral("2");
}

void TestDocumentConversions::localEntryGivesNameSuffixAndType()
{
    QFETCH(QString, name);
    QFETCH(bool, isFolder);
    QFETCH(QString, suffix);

    const QTemporaryDir folder;
    if (isFolder)
        QVERIFY(QDir(folder.path()).mkdir(name));
    else
        writeFile(folder.filePath(name), 0);

    VellDocument doc;
    VellPubDoc::getVellDocument(folder.filePath(name), doc);
    QCOMPARE(doc.name, name);
    QCOMPARE(doc.suffix, suffix);
    QCOMPARE(doc.type, isFolder ? QStringLiteral("dir") : QStringLiteral("file"));
    QCOMPARE(doc.fileSize, QFileInfo(folder.filePath(name)).size());
}

void TestDocumentConversions::linkIsAlwaysAFile()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("real")));
    writeFile(folder.filePath(QStringLiteral("real.txt")), 12);
#ifdef Q_OS_WIN
    const QString ending = QStringLiteral(".lnk");
#else
    const QString ending;
#endif
    const QString toFolder = folder.filePath(QStringLiteral("to folder") + ending);
    const QString toFile = folder.filePath(QStringLiteral("to file") + ending);
    const QString toNothing = folder.filePath(QStringLiteral("to nothing") + ending);
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("real")), toFolder));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("real.txt")), toFile));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("missing")), toNothing));

    VellDocument doc;
    VellPubDoc::getVellDocument(toFolder, doc);
    QCOMPARE(doc.type, QStringLiteral("file"));
    QCOMPARE(doc.filePath, toFolder);

    VellPubDoc::getVellDocument(toFile, doc);
    QCOMPARE(doc.type, QStringLiteral("file"));
    QCOMPARE(doc.fileSize, Q_INT64_C(12));

    const QString before = fieldText(doc);
    VellPubDoc::getVellDocument(toNothing, doc);
    QCOMPARE(fieldText(doc), before);
}

void TestDocumentConversions::missingPathLeavesTheRecord()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing.txt"));

    VellDocument fresh;
    VellPubDoc::getVellDocument(missing, fresh);
    QCOMPARE(fieldText(fresh), fieldText(VellDocument()));

    VellDocument filled = filledRecord();
    VellPubDoc::getVellDocument(QFileInfo(missing), filled);
    VellPubDoc::getVellDocument(QString(), filled);
    QCOMPARE(fieldText(filled), fieldText(filledRecord()));
}

void TestDocumentConversions::pathIsKeptAsGiven()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("sub")));
    writeFile(folder.filePath(QStringLiteral("a.txt")), 1);
    const QString roundabout = folder.path() + QStringLiteral("/sub/../a.txt");

    VellDocument doc;
    VellPubDoc::getVellDocument(roundabout, doc);
    QCOMPARE(doc.filePath, roundabout);
    QCOMPARE(doc.name, QStringLiteral("a.txt"));
}

void TestDocumentConversions::treeKeepsEveryFieldOfARecord()
{
    VellDocument root = filledRecord();
    root.parentId.clear();
    QList<VellDocument> docs{root};
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(docs.size(), 1);
    QCOMPARE(fieldText(docs.at(0)), fieldText(root));
}

QTEST_GUILESS_MAIN(TestDocumentConversions)

#include "tst_document_conversions.moc"
