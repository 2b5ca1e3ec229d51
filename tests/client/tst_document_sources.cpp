#include "ClientWorld.h"

#include <models/VellDocumentModel.h>

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Source = VellDocumentSource;

// What a model shows of each source, with the reference service, while documents change.
class TestDocumentSources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void columnsAndRoles();
    void foldersAreFirst();
    void aSearch();
    void favorites();
    void frequent();
    void recent();
    void theRecycleBin();
    void newEntriesAppear();
    void aRenamedDocumentMovesWithItsSelection();
    void movedDocumentsGo();

private:
    void show(const Source &source);
    QStringList names() const;

    std::unique_ptr<ClientWorld> m_world;
    std::unique_ptr<VellDocumentModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestDocumentSources::init()
{
    m_world = std::make_unique<ClientWorld>();
    m_model = std::make_unique<VellDocumentModel>(&m_world->documents);
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
    m_model->sort(VellDocumentModel::NameColumn);
}

void TestDocumentSources::cleanup()
{
    m_tester.reset();
    m_model.reset();
    m_world.reset();
}

void TestDocumentSources::show(const Source &source)
{
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->setSource(source);
    QCOMPARE(m_model->source().kind(), source.kind());
    QVERIFY(loaded.wait(WaitMs));
}

QStringList TestDocumentSources::names() const
{
    QStringList names;
    for (int row = 0; row < m_model->rowCount(); ++row)
        names.append(m_model->index(row, VellDocumentModel::NameColumn).data().toString());
    return names;
}

void TestDocumentSources::columnsAndRoles()
{
    QLocale::setDefault(QLocale::c());
    const VellDocument plan = m_world->store(QStringLiteral("plan.dwg"), QByteArray(2048, 'x'));
    m_world->store(QStringLiteral("other.dwg"));
    await(m_world->documents.setRemark(plan._id, QStringLiteral("approved")));
    show(Source::folder(QString()));
    const VellDocument stored = await(m_world->documents.document(plan._id));
    const auto text = [this](int column) { return m_model->index(1, column).data().toString(); };
    QCOMPARE(text(VellDocumentModel::NameColumn), QStringLiteral("plan.dwg"));
    QCOMPARE(text(VellDocumentModel::SizeColumn), QStringLiteral("2.00 KiB"));
    QVERIFY(!text(VellDocumentModel::TypeColumn).isEmpty());
    QCOMPARE(text(VellDocumentModel::ChangedAtColumn),
             QLocale().toString(stored.updatedAt.toLocalTime(), QLocale::ShortFormat));
    QCOMPARE(text(VellDocumentModel::ChangedByColumn), m_world->session.user().name);
    QCOMPARE(text(VellDocumentModel::RemarkColumn), QStringLiteral("approved"));
    for (int column = 0; column < m_model->columnCount(); ++column)
        QVERIFY(!m_model->headerData(column, Qt::Horizontal).toString().isEmpty());

    const QModelIndex index = m_model->index(1, VellDocumentModel::NameColumn);
    QCOMPARE(index.data(VellModelRole::Id).toString(), plan._id);
    QCOMPARE(index.data(VellModelRole::IsFolder), QVariant(false));
    QCOMPARE(index.data(VellModelRole::Document).value<VellDocument>().fileId, plan.fileId);
    QCOMPARE(index.data(VellModelRole::Rights).toMap().value(QStringLiteral("edit")),
             QVariant(true));
    const QIcon icon = index.data(Qt::DecorationRole).value<QIcon>();
    QVERIFY(!icon.isNull());
    QCOMPARE(m_model->index(0, 0).data(Qt::DecorationRole).value<QIcon>().cacheKey(),
             icon.cacheKey());
}

void TestDocumentSources::foldersAreFirst()
{
    m_world->store(QStringLiteral("a"));
    await(m_world->documents.createFolder({}, QStringLiteral("b")));
    for (const auto order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        m_model->sort(VellDocumentModel::NameColumn, order);
        show(Source::folder(QString()));
        QCOMPARE(names(), QStringList({QStringLiteral("b"), QStringLiteral("a")}));
    }
}

void TestDocumentSources::aSearch()
{
    const QString folder = await(m_world->documents.createFolder({}, QStringLiteral("folder")))._id;
    m_world->store(QStringLiteral("plan 1"));
    const VellDocument deep = m_world->store(QStringLiteral("plan 2"), "x", folder);
    m_world->store(QStringLiteral("text"), "x", folder);
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.searchName = QStringLiteral("plan");
    show(Source::search(condition));
    QCOMPARE(names(), QStringList({QStringLiteral("plan 1"), QStringLiteral("plan 2")}));
    await(m_world->documents.remove({deep._id}));
    QCOMPARE(names(), QStringList(QStringLiteral("plan 1")));
}

void TestDocumentSources::favorites()
{
    const VellDocument a = m_world->store(QStringLiteral("a"));
    const VellDocument b = m_world->store(QStringLiteral("b"));
    await(m_world->documents.setFavorite(a._id, true));
    show(Source::favorites());
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
    await(m_world->documents.document(b._id));
    await(m_world->documents.setFavorite(b._id, true));
    await(m_world->documents.list(VellDocumentConditon()));
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList({QStringLiteral("a"), QStringLiteral("b")}),
                              WaitMs);
    await(m_world->documents.setFavorite(a._id, false));
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList(QStringLiteral("b")), WaitMs);
}

void TestDocumentSources::frequent()
{
    m_world->store(QStringLiteral("a"));
    const VellDocument b = m_world->store(QStringLiteral("b"));
    await(m_world->documents.setFrequent(b._id, true));
    show(Source::frequent());
    QCOMPARE(names(), QStringList(QStringLiteral("b")));
}

void TestDocumentSources::recent()
{
    m_world->store(QStringLiteral("a"));
    m_world->store(QStringLiteral("b"));
    await(m_world->documents.createFolder({}, QStringLiteral("folder")));
    show(Source::recent());
    QCOMPARE(names(), QStringList({QStringLiteral("b"), QStringLiteral("a")}));
}

void TestDocumentSources::theRecycleBin()
{
    const VellDocument a = m_world->store(QStringLiteral("a"));
    const VellDocument b = m_world->store(QStringLiteral("b"));
    show(Source::recycleBin());
    QCOMPARE(m_model->rowCount(), 0);
    await(m_world->documents.remove({a._id, b._id}));
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList({QStringLiteral("a"), QStringLiteral("b")}),
                              WaitMs);
    await(m_world->documents.restore({a._id}));
    QCOMPARE(names(), QStringList(QStringLiteral("b")));
}

void TestDocumentSources::newEntriesAppear()
{
    show(Source::folder(QString()));
    await(m_world->documents.createFolder({}, QStringLiteral("a")));
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList(QStringLiteral("a")), WaitMs);
}

void TestDocumentSources::aRenamedDocumentMovesWithItsSelection()
{
    const VellDocument a = m_world->store(QStringLiteral("a"));
    m_world->store(QStringLiteral("b"));
    show(Source::folder(QString()));
    QItemSelectionModel selection(m_model.get());
    selection.select(m_model->index(0, 0), QItemSelectionModel::Select);
    await(m_world->documents.rename(a._id, QStringLiteral("c")));
    QCOMPARE(names(), QStringList({QStringLiteral("c"), QStringLiteral("b")})); // in place
    QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList({QStringLiteral("b"), QStringLiteral("c")}),
                              WaitMs);
    QCOMPARE(selection.selectedIndexes(), QModelIndexList{m_model->index(1, 0)});
}

void TestDocumentSources::movedDocumentsGo()
{
    const VellDocument a = m_world->store(QStringLiteral("a"));
    const QString folder = await(m_world->documents.createFolder({}, QStringLiteral("folder")))._id;
    show(Source::folder(QString()));
    await(m_world->documents.move({a._id}, folder));
    QCOMPARE(names(), QStringList(QStringLiteral("folder")));
    show(Source::folder(folder));
    QCOMPARE(names(), QStringList(QStringLiteral("a")));
}

QTEST_MAIN(TestDocumentSources)
#include "tst_document_sources.moc"
