#include "ListServer.h"

#include <documents/VellDocumentStore.h>
#include <models/VellDocumentModel.h>

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>

#include <memory>

constexpr int WaitMs = 30'000;
constexpr int Many = 100'000;

const QString defaultOrder = QStringLiteral("type order -updatedAt");

//! What the server is asked for a page.
QStringList page(const QString &order, const char *skipAndLimit)
{
    return {order + QLatin1Char(' ') + QLatin1String(skipAndLimit), QStringLiteral("count")};
}

QString idOf(int number)
{
    return QStringLiteral("id-%1.dwg").arg(number, 5, 10, QLatin1Char('0'));
}

// Paging, selections and changes, at a server whose requests can be seen.
class TestDocumentModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { open(Many); }
    void cleanup();

    void isASoundModel();
    void theCountIsTheServices();
    void fetchesThePagesThatAreLookedAt();
    void aPageIsOneSignal();
    void rowsThatAreNotThereYetSayIt();
    void aLoopThroughAllRowsDoesNotFetchThem();
    void keepsAFewThousandRows();
    void theServiceSorts_data();
    void theServiceSorts();
    void unknownRowsMakeRoomForKnownOnes();
    void selectionsStayWithTheirDocuments_data();
    void selectionsStayWithTheirDocuments();
    void rangesStayWithTheirDocuments();
    void selectedRowsThatAreNotThereYetAreNotTakenForOthers();
    void theSelectionOfAGoneDocumentGoes();
    void reloadShowsWhatWasThere();
    void aPageOfAnotherListIsCorrected();
    void aListThatHasBecomeShorterThanWhatIsLookedAt();
    void changesAppearInPlace();
    void removedRowsGoAtOnce();
    void manyRemovedRowsAreOneReload();
    void aFailureIsToldOnce();
    void transferStatesFollowTheDocument();
    void anotherProjectEmptiesIt();
    void deletionEndsWhatIsUnderWay();

private:
    void open(int count);
    //! Lets a view of some rows paint.
    void look(int first, int last);
    QString nameIn(int row) const { return m_model->index(row, 0).data().toString(); }
    bool isLoaded(int row) const { return m_model->document(m_model->index(row, 0)).has_value(); }

    std::unique_ptr<ListServer> m_server;
    std::unique_ptr<VellDocumentModel> m_model;
};

void TestDocumentModel::open(int count)
{
    cleanup();
    m_server = std::make_unique<ListServer>(count);
    m_model = std::make_unique<VellDocumentModel>(&m_server->service);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->setSource(VellDocumentSource::folder(QString()));
    QVERIFY(m_model->isLoading());
    QVERIFY(loaded.wait(WaitMs));
    QVERIFY(!m_model->isLoading());
}

void TestDocumentModel::cleanup()
{
    m_model.reset();
    m_server.reset();
}

void TestDocumentModel::look(int first, int last)
{
    for (int row = first; row <= last; ++row)
        nameIn(row);
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded(first) && isLoaded(last), WaitMs);
}

// Of a small list, because the tester goes through all rows after each signal.
void TestDocumentModel::isASoundModel()
{
    open(250);
    const QAbstractItemModelTester tester(m_model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    look(0, 10);
    look(150, 249);
    const QPersistentModelIndex selected = m_model->index(200, 0);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->sort(VellDocumentModel::NameColumn, Qt::DescendingOrder);
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(selected.row(), 49);
    m_server->service.store()->remove({QStringLiteral("id-200.dwg"), QStringLiteral("id-202.dwg")});
    QVERIFY(!selected.isValid());
    m_server->names = m_server->names.mid(0, 120);
    m_model->reload();
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 120, WaitMs);
    m_server->names.append(QStringLiteral("more.dwg"));
    m_model->reload();
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 121, WaitMs);
    m_model->setSource({});
    QCOMPARE(m_model->rowCount(), 0);
}

void TestDocumentModel::theCountIsTheServices()
{
    QCOMPARE(m_model->rowCount(), Many);
    QCOMPARE(m_server->takeRequests(), page(defaultOrder, "0+100"));
    QCOMPARE(nameIn(99), QStringLiteral("00099.dwg"));
}

void TestDocumentModel::fetchesThePagesThatAreLookedAt()
{
    m_server->takeRequests();
    look(10, 30);
    QVERIFY(m_server->takeRequests().isEmpty());

    look(40, 60); // near the next page
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded(150), WaitMs);
    QCOMPARE(m_server->takeRequests(), page(defaultOrder, "100+100"));

    look(50'060, 50'090);
    QCOMPARE(m_server->takeRequests(), page(defaultOrder, "50000+200"));
    QCOMPARE(nameIn(50'060), QStringLiteral("50060.dwg"));

    look(Many - 20, Many - 1);
    QCOMPARE(m_server->takeRequests(), page(defaultOrder, "99900+100"));
    QCOMPARE(nameIn(Many - 1), QStringLiteral("99999.dwg"));
}

void TestDocumentModel::aPageIsOneSignal()
{
    QSignalSpy changes(m_model.get(), &QAbstractItemModel::dataChanged);
    QSignalSpy layouts(m_model.get(), &QAbstractItemModel::layoutChanged);
    look(50'060, 50'090);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex().row(), 50'000);
    QCOMPARE(changes.at(0).at(1).toModelIndex().row(), 50'199);
    QVERIFY(layouts.isEmpty());
}

void TestDocumentModel::rowsThatAreNotThereYetSayIt()
{
    const QModelIndex index = m_model->index(70'000, VellDocumentModel::NameColumn);
    QCOMPARE(index.data(VellModelRole::IsLoaded), QVariant(false));
    QVERIFY(!index.data().isValid() && !index.data(VellModelRole::Id).isValid());
    QVERIFY(!m_model->document(index));
    QVERIFY(m_model->documents(70'000, 70'001).isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(index.data(VellModelRole::IsLoaded), QVariant(true), WaitMs);
    QCOMPARE(m_model->document(index)->name, QStringLiteral("70000.dwg"));
    const QList<VellDocument> documents = m_model->documents(0, 70'001);
    QCOMPARE(documents.at(documents.size() - 2).name, QStringLiteral("70000.dwg"));
    QCOMPARE(documents.constLast().name, QStringLiteral("70001.dwg"));
    QCOMPARE(m_model->indexOf(idOf(70000)), index);
}

void TestDocumentModel::aLoopThroughAllRowsDoesNotFetchThem()
{
    m_server->takeRequests();
    for (int row = 0; row < Many; ++row)
        nameIn(row);
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded(Many - 1), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(!m_model->isLoading(), WaitMs);
    QVERIFY(m_server->takeRequests().size() <= 4);
}

void TestDocumentModel::keepsAFewThousandRows()
{
    QPersistentModelIndex selected = m_model->index(10, 0);
    for (int row = 0; row < 9000; row += 100)
        look(row, row + 99);
    QVERIFY(isLoaded(8999));
    QVERIFY(isLoaded(10)); // it has a persistent index
    QVERIFY(isLoaded(8000)); // as everything between
    selected = QPersistentModelIndex();
    look(9000, 9099);
    QTRY_VERIFY_WITH_TIMEOUT(!isLoaded(20), WaitMs);
    QVERIFY(isLoaded(8999));
}

void TestDocumentModel::theServiceSorts_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<QString>("asked");
    const Qt::SortOrder up = Qt::AscendingOrder;
    const Qt::SortOrder down = Qt::DescendingOrder;
    QTest::newRow("name") << int(VellDocumentModel::NameColumn) << up << "type name";
    QTest::newRow("name, down") << int(VellDocumentModel::NameColumn) << down << "type -name";
    QTest::newRow("size") << int(VellDocumentModel::SizeColumn) << up << "type fileSize";
    QTest::newRow("type") << int(VellDocumentModel::TypeColumn) << down << "type -suffix name";
    QTest::newRow("time") << int(VellDocumentModel::ChangedAtColumn) << down << "type -updatedAt";
    QTest::newRow("user") << int(VellDocumentModel::ChangedByColumn) << up << "type updatedBy name";
    QTest::newRow("remark") << int(VellDocumentModel::RemarkColumn) << up << "type remark name";
}

void TestDocumentModel::theServiceSorts()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(QString, asked);
    m_server->takeRequests();
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->sort(column, order);
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(m_server->takeRequests(), page(asked, "0+100"));
    m_model->sort(column, order);
    QVERIFY(!m_model->isLoading());
    m_model->sort(-1);
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(m_server->takeRequests(), page(defaultOrder, "0+100"));
}

void TestDocumentModel::unknownRowsMakeRoomForKnownOnes()
{
    QPersistentModelIndex known = m_model->index(99, 0);
    const QPersistentModelIndex unknown = m_model->index(100, 0);
    const QPersistentModelIndex next = m_model->index(101, 0);
    const QPersistentModelIndex other = m_model->index(100, 1);
    QVERIFY(isLoaded(99) && !isLoaded(100));
    m_server->names.prepend(QStringLiteral("-new.dwg"));
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->reload();
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(known.row(), 100);
    QCOMPARE(unknown.row(), 101);
    QCOMPARE(next.row(), 102);
    QCOMPARE(other.row(), 100);
    // The model still knows each of them.
    known = QPersistentModelIndex();
    m_model->setSource({});
    QVERIFY(!unknown.isValid() && !next.isValid() && !other.isValid());
}

void TestDocumentModel::selectionsStayWithTheirDocuments_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("sortColumn");
    QTest::addColumn<int>("insertedBefore");
    QTest::addColumn<int>("newRow");
    QTest::newRow("reload") << 5 << -1 << 0 << 5;
    QTest::newRow("entries come before it") << 5 << -1 << 3 << 8;
    QTest::newRow("far from what is looked at") << 70'000 << -1 << 3 << 70'003;
    QTest::newRow("sorted the other way") << 5 << 0 << 0 << Many - 6;
    QTest::newRow("sorted, far away") << 70'000 << 0 << 0 << Many - 70'001;
}

void TestDocumentModel::selectionsStayWithTheirDocuments()
{
    QFETCH(int, row);
    QFETCH(int, sortColumn);
    QFETCH(int, insertedBefore);
    QFETCH(int, newRow);
    look(row, row + 1);
    const QString name = nameIn(row);
    QItemSelectionModel selection(m_model.get());
    selection.setCurrentIndex(m_model->index(row, 0),
                              QItemSelectionModel::Select | QItemSelectionModel::Rows);
    look(0, 30);
    for (int i = 0; i < insertedBefore; ++i)
        m_server->names.prepend(QStringLiteral("-%1.dwg").arg(i));

    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    if (sortColumn >= 0)
        m_model->sort(sortColumn, Qt::DescendingOrder);
    else
        m_model->reload();
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(m_model->rowCount(), Many + insertedBefore);
    QCOMPARE(selection.currentIndex().row(), newRow);
    QCOMPARE(selection.selectedRows().size(), 1);
    QCOMPARE(selection.selectedRows().at(0).row(), newRow);
    QCOMPARE(m_model->document(selection.currentIndex())->name, name); // without a request
}

void TestDocumentModel::rangesStayWithTheirDocuments()
{
    look(40, 60);
    look(130, 160);
    QItemSelectionModel selection(m_model.get());
    selection.select({m_model->index(95, 0), m_model->index(104, 5)}, QItemSelectionModel::Select);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->sort(VellDocumentModel::NameColumn, Qt::DescendingOrder);
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(selection.selectedRows().size(), 10);
    for (int row = Many - 105; row <= Many - 96; ++row)
        QVERIFY(selection.isRowSelected(row, QModelIndex()));
}

void TestDocumentModel::selectedRowsThatAreNotThereYetAreNotTakenForOthers()
{
    look(70'000, 70'010);
    QItemSelectionModel selection(m_model.get());
    selection.select({m_model->index(95, 0), m_model->index(70'005, 5)},
                     QItemSelectionModel::Select);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->reload();
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(selection.selectedRows().size(), 70'005 - 95 + 1);
    m_model->sort(VellDocumentModel::NameColumn, Qt::DescendingOrder);
    QVERIFY(loaded.wait(WaitMs));
    QVERIFY(selection.isRowSelected(Many - 96, QModelIndex()));
    QVERIFY(selection.isRowSelected(Many - 70'006, QModelIndex()));
    QVERIFY(!selection.isRowSelected(50'000, QModelIndex()));
}

void TestDocumentModel::theSelectionOfAGoneDocumentGoes()
{
    QItemSelectionModel selection(m_model.get());
    selection.setCurrentIndex(m_model->index(5, 0), QItemSelectionModel::Select);
    m_server->names.removeAt(5);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->reload();
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(m_model->rowCount(), Many - 1);
    QVERIFY(!selection.hasSelection());
    QVERIFY(!selection.currentIndex().isValid());
}

void TestDocumentModel::reloadShowsWhatWasThere()
{
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->reload();
    QVERIFY(m_model->isLoading());
    QCOMPARE(nameIn(0), QStringLiteral("00000.dwg"));
    QVERIFY(loaded.wait(WaitMs));
    QVERIFY(resets.isEmpty());
}

void TestDocumentModel::aPageOfAnotherListIsCorrected()
{
    m_server->names.prepend(QStringLiteral("-.dwg"));
    m_server->names.removeLast(); // the count is the same
    look(90, 100);
    QTRY_COMPARE_WITH_TIMEOUT(nameIn(99), QStringLiteral("00098.dwg"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(nameIn(100), QStringLiteral("00099.dwg"), WaitMs);
    m_server->names.removeFirst();
    look(50'000, 50'010);
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), Many - 1, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(nameIn(50'000), QStringLiteral("50000.dwg"), WaitMs);
}

void TestDocumentModel::aListThatHasBecomeShorterThanWhatIsLookedAt()
{
    look(70'000, 70'010);
    m_server->names = m_server->names.mid(0, 150);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_model->reload();
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(m_model->rowCount(), 150);
    look(149, 149);
    QCOMPARE(nameIn(149), QStringLiteral("00149.dwg"));
}

void TestDocumentModel::changesAppearInPlace()
{
    m_server->takeRequests();
    QSignalSpy changes(m_model.get(), &QAbstractItemModel::dataChanged);
    QList<VellDocument> documents = m_server->documents(3, 5);
    for (VellDocument &document : documents)
        document.remark = QStringLiteral("read");
    m_server->service.store()->insert(documents);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex().row(), 3);
    QCOMPARE(changes.at(0).at(1).toModelIndex().row(), 5);
    QCOMPARE(m_model->index(4, VellDocumentModel::RemarkColumn).data().toString(),
             QStringLiteral("read"));
    QTest::qWait(200);
    QVERIFY(m_server->takeRequests().isEmpty()); // the order cannot have changed

    documents[0].order = 7;
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    m_server->service.store()->insert(documents);
    QVERIFY(loaded.wait(WaitMs));
    QCOMPARE(m_server->takeRequests(), page(defaultOrder, "0+100"));
}

void TestDocumentModel::removedRowsGoAtOnce()
{
    QItemSelectionModel selection(m_model.get());
    selection.setCurrentIndex(m_model->index(20, 0), QItemSelectionModel::Select);
    QSignalSpy removals(m_model.get(), &QAbstractItemModel::rowsRemoved);
    m_server->service.store()->remove({idOf(3), idOf(5), idOf(4)});
    QCOMPARE(removals.size(), 1);
    QCOMPARE(m_model->rowCount(), Many - 3);
    QCOMPARE(nameIn(3), QStringLiteral("00006.dwg"));
    QCOMPARE(selection.currentIndex().row(), 17);
    QCOMPARE(m_model->indexOf(idOf(20)).row(), 17);
}

void TestDocumentModel::manyRemovedRowsAreOneReload()
{
    QStringList ids;
    for (int i = 98; i >= 0; i -= 2) {
        ids.append(QStringLiteral("id-") + m_server->names.at(i));
        m_server->names.removeAt(i);
    }
    QSignalSpy removals(m_model.get(), &QAbstractItemModel::rowsRemoved);
    m_server->service.store()->remove(ids);
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), Many - 50, WaitMs);
    QCOMPARE(removals.size(), 1);
    QCOMPARE(nameIn(1), QStringLiteral("00003.dwg"));
}

void TestDocumentModel::aFailureIsToldOnce()
{
    QSignalSpy failed(m_model.get(), &VellDocumentModel::loadFailed);
    m_server->failureStatus = 403;
    nameIn(50'000);
    QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, WaitMs);
    QCOMPARE(m_model->error().kind, VellError::Kind::NotAllowed);
    QVERIFY(!m_model->isLoading());
    m_server->takeRequests();
    nameIn(50'000); // the view paints again
    QTest::qWait(200);
    QVERIFY(m_server->takeRequests().isEmpty());
    QCOMPARE(nameIn(0), QStringLiteral("00000.dwg"));

    m_server->failureStatus = 200;
    m_model->reload();
    QVERIFY(!m_model->error());
    look(50'000, 50'010);
    QCOMPARE(failed.size(), 1);
}

void TestDocumentModel::transferStatesFollowTheDocument()
{
    QSignalSpy changes(m_model.get(), &QAbstractItemModel::dataChanged);
    m_model->setTransferState(idOf(3), 50);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(2).value<QVector<int>>(), QVector<int>{VellModelRole::Transfer});
    QCOMPARE(m_model->index(3, 0).data(VellModelRole::Transfer), QVariant(50));
    m_server->service.store()->remove({idOf(1)});
    QCOMPARE(m_model->index(2, 0).data(VellModelRole::Transfer), QVariant(50));
    m_model->setTransferState(idOf(3), {});
    QVERIFY(!m_model->index(2, 0).data(VellModelRole::Transfer).isValid());
    m_model->setTransferState(QStringLiteral("elsewhere"), 10);
}

void TestDocumentModel::anotherProjectEmptiesIt()
{
    m_model->reload();
    m_server->session.openProject(QStringLiteral("p2"));
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(!m_model->isLoading());
    QTest::qWait(100);
    QCOMPARE(m_model->rowCount(), 0);
}

void TestDocumentModel::deletionEndsWhatIsUnderWay()
{
    m_model->reload();
    m_model.reset();
    const auto operations = m_server->session.findChildren<VellOperation *>();
    QVERIFY(std::all_of(operations.begin(), operations.end(),
                        [](const VellOperation *operation) { return operation->isEnded(); }));
}

QTEST_MAIN(TestDocumentModel)
#include "tst_document_model.moc"
