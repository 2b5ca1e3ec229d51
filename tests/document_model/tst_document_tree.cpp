#include <document_model/DocumentConversions.h>

#include <QRandomGenerator>
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

// "a/ b/root" makes the record a at the top level and the record b in the folder root; "b/root:2"
// gives the record the name 2 to tell it from others of its id.
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
        QString word = doc._id.isEmpty() ? QString("-") : doc._id;
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

class TestDocumentTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

void TestDocumentTree::flatListBecomesAForest_data()
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

void TestDocumentTree::flatListBecomesAForest()
{
    QFETCH(QString, flat);
    QFETCH(QString, forest);

    QList<VellDocument> docs = flatList(flat);
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), forest);
}

void TestDocumentTree::childrenBroughtAlongStayInFront()
{
    QList<VellDocument> docs = flatList("new/b b/a a/");
    docs[1].children = flatList("own/b kept/elsewhere");
    docs[2].children = flatList("first/a");
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QString("a(first b(own kept new))"));
}

void TestDocumentTree::recordsBelowBroughtChildrenAreFound()
{
    QList<VellDocument> docs = flatList("file/own a/");
    docs[1].children = flatList("other/a own/a");
    docs[1].children[0].children = flatList("deep/other");
    const QList<VellDocument> brought = docs.at(1).children;
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QString("a(other(deep) own(file))"));
    QCOMPARE(treeText(brought), QString("other(deep) own"));

    // The way to z leads through itself here, but not where y was completed first.
    QList<VellDocument> crossing = flatList("y/:1 z/:2 z/y:3 w/z");
    crossing[1].children = flatList("y/z:4");
    VellPubDoc::makeDocListTree(crossing);
    QCOMPARE(treeText(crossing), QString("y:1(z:3(w)) z:2(y:4(z:3) w)"));
}

void TestDocumentTree::repeatedIdentifierKeepsBroughtChildren()
{
    QList<VellDocument> docs = flatList("a/:1 a/a:2 /a:3");
    docs[1].children = flatList("x/");
    docs[2].children = flatList("y/");
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QString("a:1(a:2(x) -:3(y))"));
}

void TestDocumentTree::inputIsCopiedAndTheCallersOtherCopiesStay()
{
    const QList<VellDocument> flat = flatList("b/a a/ c/b");
    QList<VellDocument> docs = flat;
    VellPubDoc::makeDocListTree(docs);
    QCOMPARE(treeText(docs), QString("a(b(c))"));
    QCOMPARE(treeText(flat), QString("b a c"));
}

void TestDocumentTree::copiesOfAFolderListedTwiceAreIndependent()
{
    QList<VellDocument> docs = flatList("a/ a/ b/a c/b");
    VellPubDoc::makeDocListTree(docs);
    docs[0].children[0].children[0].name = "changed";
    QCOMPARE(treeText(docs), QString("a(b(c:changed)) a(b(c))"));
}

// Two pages of a list that overlap: every level doubles what stands below it.
void TestDocumentTree::foldersListedTwiceInEveryLevelEndInTime()
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

void TestDocumentTree::randomListsFollowTheRules()
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

void TestDocumentTree::deepChainIsBuiltOnASmallStack()
{
    QList<VellDocument> docs = chain(20000);
    runOnStack(256U * 1024, [&docs] { VellPubDoc::makeDocListTree(docs); });
    QCOMPARE(docs.size(), 1);
    QCOMPARE(depthOf(docs), 20000);
    runOnStack(8U * 1024 * 1024, [&docs] { docs.clear(); });
}

void TestDocumentTree::deepChainIsDestroyed_data()
{
    QTest::addColumn<int>("levels");
    QTest::addColumn<uint>("stackBytes");

    QTest::newRow("main thread on Linux") << 40000 << 8U * 1024 * 1024;
    QTest::newRow("main thread on Windows") << 5000 << 1024U * 1024;
}

void TestDocumentTree::deepChainIsDestroyed()
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

QTEST_GUILESS_MAIN(TestDocumentTree)

#include "tst_document_tree.moc"
