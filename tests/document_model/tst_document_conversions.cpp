#include <document_model/DocumentConversions.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>

namespace {

VellDocument record(const QString &id, const QString &parentId, const QString &name = QString())
{
    VellDocument doc;
    doc._id = id;
    doc.parentId = parentId;
    doc.name = name;
    return doc;
}

// "a/ b/root" makes the record a at the top level and the record b in the folder root; "b/root:2" gives the
// record the name 2 to tell it from others of its id.
QList<VellDocument> flatList(const QString &text)
{
    QList<VellDocument> docs;
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        const QString path = word.section(QLatin1Char(':'), 0, 0);
        docs.append(record(path.section(QLatin1Char('/'), 0, 0),
                           path.section(QLatin1Char('/'), 1, 1),
                           word.section(QLatin1Char(':'), 1, 1)));
    }
    return docs;
}

// "root(folder(file) other)"; a record without an id is "-", a name follows as ":name".
QString treeText(const QList<VellDocument> &docs)
{
    QStringList words;
    for (const VellDocument &doc : docs) {
        QString word = doc._id.isEmpty() ? QStringLiteral("-") : doc._id;
        if (!doc.name.isEmpty())
            word += QLatin1Char(':') + doc.name;
        if (!doc.children.isEmpty())
            word += QLatin1Char('(') + treeText(doc.children) + QLatin1Char(')');
        words.append(word);
    }
    return words.join(QLatin1Char(' '));
}

// The rules word for word, in quadratic time and with recursion.
void attachByScan(VellDocument &parent, const QList<VellDocument> &records, QStringList way)
{
    if (parent._id.isEmpty() || way.contains(parent._id))
        return;
    way.append(parent._id);
    for (const VellDocument &candidate : records) {
        if (candidate.parentId == parent._id)
            parent.children.append(candidate);
    }
    for (VellDocument &child : parent.children)
        attachByScan(child, records, way);
}

QList<VellDocument> treeByScan(const QList<VellDocument> &records)
{
    QList<VellDocument> roots;
    for (const VellDocument &candidate : records) {
        if (candidate.parentId.isEmpty())
            roots.append(candidate);
    }
    for (VellDocument &root : roots)
        attachByScan(root, records, {});
    return roots;
}

// Every field but the dates differs from its default.
VellDocument filledRecord()
{
    VellDocument doc =
        record(QStringLiteral("id"), QStringLiteral("parent"), QStringLiteral("name"));
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
    doc.children.append(record(QStringLiteral("child"), QStringLiteral("id")));
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
          << treeText(doc.children) << QString::number(doc.codeList.size())
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

// Runs \a work on a thread with a stack of \a stackBytes.
template <typename Work>
void runOnStack(uint stackBytes, Work work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(stackBytes);
    thread->start();
    QVERIFY(thread->wait(60000));
}

// One record in each level, the deepest first.
QList<VellDocument> chain(int levels)
{
    QList<VellDocument> docs;
    for (int level = levels; level > 0; --level)
        docs.append(
            record(QString::number(level), level > 1 ? QString::number(level - 1) : QString()));
    return docs;
}

int depthOf(const QList<VellDocument> &docs)
{
    int depth = 0;
    for (const QList<VellDocument> *level = &docs; !level->isEmpty();
         level = &level->first().children)
        ++depth;
    return depth;
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

    void flatListBecomesAForest_data();
    void flatListBecomesAForest();
    void childrenBroughtAlongStayInFront();
    void recordsBelowBroughtChildrenAreFound();
    void repeatedIdentifierKeepsBroughtChildren();
    void inputIsCopiedAndTheCallersOtherCopiesStay();
    void copiesOfAFolderListedTwiceAreIndependent();
    void foldersListedTwiceInEveryLevelEndInTime();
    void randomListsFollowTheRules();
    void deepChainIsBuiltOnASmallStack();
    void deepChainIsDestroyed_data();
    void deepChainIsDestroyed();
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

    QList<VellDocument> docs{record(QStringLiteral("before"), QString())};
    VellPubDoc::docLite2Document(lites, docs);
    QCOMPARE(treeText(docs), QStringLiteral("before lite id:总图.dwg second:总图.dwg"));

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

void TestDocumentConversions::flatListBecomesAForest_data()
{
    QTest::addColumn<QString>("flat");
    QTest::addColumn<QString>("forest");

    const auto add = [](const char *row, const char *flat, const char *forest) {
        QTest::newRow(row) << QString::fromLatin1(flat) << QString::fromLatin1(forest);
    };
    add("empty list", "", "");
    add("no root", "b/a c/b", "");
    add("one root", "a/", "a");
    add("chain in order", "root/ folder/root file/folder", "root(folder(file))");
    add("chain backwards", "file/folder folder/root root/", "root(folder(file))");
    add("chain mixed", "folder/root file/folder root/", "root(folder(file))");
    add("order of the input", "z/ b/z a/ c/z y/a x/a a2/z", "z(b c a2) a(y x)");
    add("orphan", "a/ lost/nowhere below/lost b/a", "a(b)");
    add("identifiers differ in case", "A/ b/a c/A", "A(c)");
    add("two roots of one identifier", "a/:1 a/:2 b/a", "a:1(b) a:2(b)");
    add("two folders of one identifier", "r/ a/r:1 c/a b/r a/b:2", "r(a:1(c) b(a:2(c)))");
    add("record that is listed twice", "a/ b/a b/a c/b", "a(b(c) b(c))");
    add("circle without a root", "a/b b/a c/", "c");
    add("record that is its own parent", "a/a c/", "c");
    add("child of its own identifier", "a/:1 a/a:2 b/a", "a:1(a:2 b)");
    add("circle below a root", "a/:1 b/a a/b:2 c/a", "a:1(b(a:2) c)");
    add("circle entered at two places", "a/ b/ a/b:2 b/a:2", "a(b:2(a:2)) b(a:2(b:2))");
    add("root without identifier", "/ a/ b/a", "- a(b)");
    add("only records without identifier", "/:1 /:2 /:3", "-:1 -:2 -:3");
    add("child without identifier", "a/ /a:1 /a:2 b/", "a(-:1 -:2) b");
}

void TestDocumentConversions::flatListBecomesAForest()
{
    QFETCH(QString, flat);
    QFETCH(QString, forest);

    QList<VellDocument> docs = flatList(flat);
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), forest);
}

void TestDocumentConversions::childrenBroughtAlongStayInFront()
{
    QList<VellDocument> docs = flatList(QStringLiteral("new/b b/a a/"));
    docs[1].children = flatList(QStringLiteral("own/b kept/elsewhere"));
    docs[2].children = flatList(QStringLiteral("first/a"));
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QStringLiteral("a(first b(own kept new))"));
}

void TestDocumentConversions::recordsBelowBroughtChildrenAreFound()
{
    QList<VellDocument> docs = flatList(QStringLiteral("file/own a/"));
    docs[1].children = flatList(QStringLiteral("other/a own/a"));
    docs[1].children[0].children = flatList(QStringLiteral("deep/other"));
    const QList<VellDocument> brought = docs.at(1).children;
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QStringLiteral("a(other(deep) own(file))"));
    QCOMPARE(treeText(brought), QStringLiteral("other(deep) own"));

    // The way to z leads through itself here, but not where y was completed first.
    QList<VellDocument> crossing = flatList(QStringLiteral("y/:1 z/:2 z/y:3 w/z"));
    crossing[1].children = flatList(QStringLiteral("y/z:4"));
    VellPubDoc::makeDocListTree(crossing);
    QCOMPARE(treeText(crossing), QStringLiteral("y:1(z:3(w)) z:2(y:4(z:3) w)"));
}

void TestDocumentConversions::repeatedIdentifierKeepsBroughtChildren()
{
    QList<VellDocument> docs = flatList(QStringLiteral("a/:1 a/a:2 /a:3"));
    docs[1].children = flatList(QStringLiteral("x/"));
    docs[2].children = flatList(QStringLiteral("y/"));
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QStringLiteral("a:1(a:2(x) -:3(y))"));
}

void TestDocumentConversions::inputIsCopiedAndTheCallersOtherCopiesStay()
{
    const QList<VellDocument> flat = flatList(QStringLiteral("b/a a/ c/b"));
    QList<VellDocument> docs = flat;
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QStringLiteral("a(b(c))"));
    QCOMPARE(treeText(flat), QStringLiteral("b a c"));

    QList<VellDocument> filled{filledRecord()};
    filled[0].parentId.clear();
    const QString before = fieldText(filled.at(0));
    VellPubDoc::makeDocListTree(filled);
    QCOMPARE(fieldText(filled.at(0)), before);
}

void TestDocumentConversions::copiesOfAFolderListedTwiceAreIndependent()
{
    QList<VellDocument> docs = flatList(QStringLiteral("a/ a/ b/a c/b"));
    VellPubDoc::makeDocListTree(docs);
    docs[0].children[0].children[0].name = QStringLiteral("changed");
    QCOMPARE(treeText(docs), QStringLiteral("a(b(c:changed)) a(b(c))"));
}

// Two pages of a list that overlap: every level doubles what stands below it.
void TestDocumentConversions::foldersListedTwiceInEveryLevelEndInTime()
{
    const int levels = 60;
    QList<VellDocument> docs = chain(levels);
    docs += chain(levels);
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(docs.size(), 2);
    QCOMPARE(depthOf(docs), levels);
    QCOMPARE(docs.at(1).children.size(), 2);
    QCOMPARE(depthOf(docs.at(1).children), levels - 1);

    // The same for records without an identifier, which a list can hold by the thousand.
    const int strays = 20000;
    QList<VellDocument> nameless;
    for (int i = 0; i < strays; ++i)
        nameless.append(VellDocument());
    VellPubDoc::makeDocListTree(nameless);
    QCOMPARE(nameless.size(), strays);
}

void TestDocumentConversions::randomListsFollowTheRules()
{
    QRandomGenerator random(4711);
    const auto identifier = [&random](int range) {
        const int number = random.bounded(range);
        return number == 0 ? QString() : QString::number(number);
    };
    for (int round = 0; round < 10000; ++round) {
        const int size = random.bounded(1, 9);
        const int range = random.bounded(2, 8);
        QList<VellDocument> docs;
        for (int i = 0; i < size; ++i) {
            docs.append(record(identifier(range), identifier(range), QString(QChar('A' + i))));
            if (random.bounded(3) == 0)
                docs.last().children.append(record(identifier(range), identifier(range)));
        }
        const QString expected = treeText(treeByScan(docs));
        VellPubDoc::makeDocListTree(docs);
        QCOMPARE(treeText(docs), expected);
    }
}

void TestDocumentConversions::deepChainIsBuiltOnASmallStack()
{
    QList<VellDocument> docs = chain(20000);
    runOnStack(256U * 1024, [&docs] { VellPubDoc::makeDocListTree(docs); });
    QCOMPARE(docs.size(), 1);
    QCOMPARE(depthOf(docs), 20000);
    runOnStack(8U * 1024 * 1024, [&docs] { docs.clear(); });
}

void TestDocumentConversions::deepChainIsDestroyed_data()
{
    QTest::addColumn<int>("levels");
    QTest::addColumn<uint>("stackBytes");

    QTest::newRow("main thread on Linux") << 40000 << 8U * 1024 * 1024;
    QTest::newRow("main thread on Windows") << 5000 << 1024U * 1024;
}

void TestDocumentConversions::deepChainIsDestroyed()
{
    QFETCH(int, levels);
    QFETCH(uint, stackBytes);

    int depth = 0;
    runOnStack(stackBytes, [levels, &depth] {
        QList<VellDocument> docs = chain(levels);
        VellPubDoc::makeDocListTree(docs);
        depth = depthOf(docs);
        docs.clear();
    });
    QCOMPARE(depth, levels);
}

QTEST_GUILESS_MAIN(TestDocumentConversions)

#include "tst_document_conversions.moc"
