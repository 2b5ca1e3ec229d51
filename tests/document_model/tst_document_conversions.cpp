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
    doc._id = "id";
    doc.parentId = "parent";
    doc.name = "name";
    doc.documentId = "documentId";
    doc.hostId = "hostId";
    doc.hostType = 3;
    doc.category = "category";
    doc.projectId = "projectId";
    doc.order = 7;
    doc.favorite = true;
    doc.type = "other";
    doc.status = "status";
    doc.fileId = "fileId";
    doc.filePath = "filePath";
    doc.fileSize = 11;
    doc.suffix = "suffix";
    doc.pwd = "pwd";
    doc.previewId = "previewId";
    doc.remark = "remark";
    doc.auths.insert("edit", true);
    doc.recycle = 1;
    doc.children.append(VellDocument());
    doc.codeList.append(VellDocumentChange::EntityLinks);
    doc.entity.insert("task", {"t1"});
    doc.updatedBy = "updatedBy";
    doc.createdBy = "createdBy";
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
    lite._id = "lite id";
    lite.name = "总图.dwg";
    lite.fileSize = Q_INT64_C(5368709120);
    lite.suffix = "dwg";
    lite.createdAt = "2020-05-31T08:00:00.123Z";
    lite.createdBy = "user";
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
    expected._id = "lite id";
    expected.name = "总图.dwg";
    expected.fileSize = Q_INT64_C(5368709120);
    expected.suffix = "dwg";
    expected.createdAt = QDateTime(QDate(2020, 5, 31), QTime(8, 0, 0, 123), Qt::UTC);
    expected.createdBy = "user";

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
    second._id = "second";
    const QList<VellDocumentLite> lites{liteRecord(), second};

    QList<VellDocument> docs{filledRecord()};
    VellPubDoc::docLite2Document(lites, docs);
    QCOMPARE(docs.size(), 3);
    QCOMPARE(fieldText(docs.at(0)), fieldText(filledRecord()));
    QCOMPARE(docs.at(2)._id, QString("second"));

    VellDocument expected;
    VellPubDoc::docLite2Document(liteRecord(), expected);
    QCOMPARE(fieldText(docs.at(1)), fieldText(expected));
    QCOMPARE(docs.at(1).type, QString("dir"));
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
    QCOMPARE(lite._id, QString("id"));
    QCOMPARE(lite.name, QString("name"));
    QCOMPARE(lite.fileSize, Q_INT64_C(5368709120));
    QCOMPARE(lite.suffix, QString("suffix"));
    QCOMPARE(lite.createdAt, QString("2020-02-03T04:05:06.000Z"));
    QCOMPARE(lite.createdBy, QString("createdBy"));
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
    const QString path = folder.filePath("图 1.PDF");
    writeFile(path, 4711);

    VellDocument expected = filledRecord();
    expected.filePath = path;
    expected.name = "图 1.PDF";
    expected.fileSize = 4711;
    expected.suffix = "PDF";
    expected.type = "file";

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

    QTest::newRow("one dot") << "plan.dwg" << false << "dwg";
    QTest::newRow("two dots") << "data.tar.gz" << false << "gz";
    QTest::newRow("no dot") << "README" << false << QString();
    QTest::newRow("dot in front") << ".profile" << false << "profile";
    QTest::newRow("dot at the end") << "odd." << false << QString();
    QTest::newRow("folder") << "drawings" << true << QString();
    QTest::newRow("folder with a dot") << "v1.2" << true << "2";
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
    QCOMPARE(doc.type, isFolder ? QString("dir") : QString("file"));
    QCOMPARE(doc.fileSize, QFileInfo(folder.filePath(name)).size());
}

void TestDocumentConversions::linkIsAlwaysAFile()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("real"));
    writeFile(folder.filePath("real.txt"), 12);
#ifdef Q_OS_WIN
    const QString ending = ".lnk";
#else
    const QString ending;
#endif
    const QString toFolder = folder.filePath(QString("to folder") + ending);
    const QString toFile = folder.filePath(QString("to file") + ending);
    const QString toNothing = folder.filePath(QString("to nothing") + ending);
    QVERIFY(QFile::link(folder.filePath("real"), toFolder));
    QVERIFY(QFile::link(folder.filePath("real.txt"), toFile));
    QVERIFY(QFile::link(folder.filePath("missing"), toNothing));

    VellDocument doc;
    VellPubDoc::getVellDocument(toFolder, doc);
    QCOMPARE(doc.type, QString("file"));
    QCOMPARE(doc.filePath, toFolder);

    VellPubDoc::getVellDocument(toFile, doc);
    QCOMPARE(doc.type, QString("file"));
    QCOMPARE(doc.fileSize, Q_INT64_C(12));

    const QString before = fieldText(doc);
    VellPubDoc::getVellDocument(toNothing, doc);
    QCOMPARE(fieldText(doc), before);
}

void TestDocumentConversions::missingPathLeavesTheRecord()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath("missing.txt");

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
    QVERIFY(QDir(folder.path()).mkdir("sub"));
    writeFile(folder.filePath("a.txt"), 1);
    const QString roundabout = folder.path() + "/sub/../a.txt";

    VellDocument doc;
    VellPubDoc::getVellDocument(roundabout, doc);
    QCOMPARE(doc.filePath, roundabout);
    QCOMPARE(doc.name, QString("a.txt"));
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
