#include "OtherUser.h"

#include <documents/VellDocumentStore.h>
#include <models/VellChangePoll.h>
#include <models/VellDocumentModel.h>
#include <models/VellFolderModel.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

// What other users change, seen by models that are polled for.
class TestChangePoll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anotherUsersRenameAppears();
    void anotherUsersFileAppears();
    void anotherUsersDeletionAppears();
    void manyChangesAreAllFound();
    void nothingChangedMeansNoReload();
    void foldersOfATreeAreFollowed();
    void theIntervalStartsRounds();
    void itWaitsWhileOffline();
    void aFailureIsTold();

private:
    void poll();
    void remove(const VellDocument &document);

    std::unique_ptr<ClientWorld> m_world;
    std::unique_ptr<VellDocumentModel> m_model;
    std::unique_ptr<VellChangePoll> m_poll;
    VellDocument m_a;
};

void TestChangePoll::init()
{
    m_world = std::make_unique<ClientWorld>();
    m_a = m_world->store(QStringLiteral("a"));
    m_world->store(QStringLiteral("b"));
    m_model = std::make_unique<VellDocumentModel>(&m_world->documents);
    m_poll = std::make_unique<VellChangePoll>(&m_world->documents);
    m_poll->follow(m_model.get());
    m_model->sort(VellDocumentModel::NameColumn);
    m_model->setSource(VellDocumentSource::folder(QString()));
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 2, WaitMs);
    QSignalSpy loaded(m_model.get(), &VellDocumentModel::loaded);
    poll(); // from now on changes are known
    QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, WaitMs); // by the first round
}

void TestChangePoll::cleanup()
{
    m_poll.reset();
    m_model.reset();
    m_world.reset();
}

void TestChangePoll::poll()
{
    QSignalSpy polled(m_poll.get(), &VellChangePoll::polled);
    m_poll->poll();
    QVERIFY(polled.wait(WaitMs));
}

void TestChangePoll::anotherUsersRenameAppears()
{
    m_world->renameElsewhere(m_a, QStringLiteral("c"));
    poll();
    QCOMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("c")); // at once, in place
    QTRY_COMPARE_WITH_TIMEOUT(m_model->index(1, 0).data().toString(), QStringLiteral("c"), WaitMs);
}

void TestChangePoll::anotherUsersFileAppears()
{
    m_world->store(QStringLiteral("c"));
    poll();
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 3, WaitMs);
}

void TestChangePoll::anotherUsersDeletionAppears()
{
    OtherUser other(*m_world);
    await(other.documents.remove({m_a._id}));
    poll();
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 1, WaitMs);
    QCOMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("b"));
}

void TestChangePoll::manyChangesAreAllFound()
{
    constexpr int Count = 50; // more than the first page of a question
    QList<VellDocument> stored;
    for (int i = 0; i < Count; ++i)
        stored.append(m_world->store(QStringLiteral("x%1").arg(i)));
    poll();
    for (const VellDocument &document : qAsConst(stored))
        QVERIFY(m_world->documents.store()->document(document._id));
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), Count + 2, WaitMs);
}

void TestChangePoll::nothingChangedMeansNoReload()
{
    QSignalSpy changed(m_world->documents.store(), &VellDocumentStore::folderChanged);
    poll();
    poll();
    QVERIFY(changed.isEmpty());
}

void TestChangePoll::foldersOfATreeAreFollowed()
{
    VellFolderModel tree(&m_world->documents);
    tree.fetchMore({});
    QTRY_VERIFY_WITH_TIMEOUT(!tree.isLoading(), WaitMs);
    m_model.reset();
    m_poll->follow(&tree);
    poll();
    OtherUser other(*m_world);
    await(other.documents.createFolder({}, QStringLiteral("folder")));
    poll();
    QTRY_COMPARE_WITH_TIMEOUT(tree.rowCount(), 1, WaitMs);
}

void TestChangePoll::theIntervalStartsRounds()
{
    QSignalSpy polled(m_poll.get(), &VellChangePoll::polled);
    m_poll->setInterval(std::chrono::milliseconds(20));
    QTest::qWait(100);
    QVERIFY(polled.isEmpty()); // not started
    m_poll->start();
    QTRY_VERIFY_WITH_TIMEOUT(polled.size() >= 2, WaitMs);
    m_poll->stop();
    polled.clear();
    QTest::qWait(100);
    QVERIFY(polled.isEmpty());
}

void TestChangePoll::itWaitsWhileOffline()
{
    m_poll->setInterval(std::chrono::milliseconds(20));
    m_poll->start();
    m_world->service.stop();
    QTRY_COMPARE_WITH_TIMEOUT(m_world->session.state(), VellSession::State::Offline, WaitMs);
    QSignalSpy failed(m_poll.get(), &VellChangePoll::pollFailed);
    QTest::qWait(200);
    QVERIFY(failed.size() <= 1); // the one that was under way
}

void TestChangePoll::aFailureIsTold()
{
    FaultRule rule;
    QString error;
    QVERIFY(FaultRule::parse(QStringLiteral("status=403"), &rule, &error));
    m_world->service.addFault(rule);
    QSignalSpy failed(m_poll.get(), &VellChangePoll::pollFailed);
    poll();
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.at(0).at(1).value<VellError>().kind, VellError::Kind::NotAllowed);
    m_world->store(QStringLiteral("c"));
    poll();
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 3, WaitMs);
}

QTEST_MAIN(TestChangePoll)
#include "tst_change_poll.moc"
