#include <service/ChunkSender.h>
#include <service/ServiceWorld.h>

#include <QCryptographicHash>
#include <QTest>

//! Who gets which content: knowing its MD5 or its id is no right to it.
class TestServiceContentRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void anotherProjectsContentIsNotTold();
    void aDocumentNeedsTheRightToItsContent_data();
    void aDocumentNeedsTheRightToItsContent();
    void aGuessedChunkMakesNoUploader();
    void theSameContentIsReceivedFromAStranger();
    void knownContentIsInstantForWhoMayHaveIt();
    void twoClientsOfOneUserShareAnUpload();
    void othersChunksDoNotHarmAnUpload();
    void anotherSizeDoesNotBlockAnMd5();
    void whoBeganFirstCannotEndAnothersUpload();
    void collidingFilesAreNeverMixedUp_data();
    void collidingFilesAreNeverMixedUp();
    void aContentWithoutSha256IsComparedByItsBytes();

private:
    QString secret() { return m_secret.md5(); }
    HttpAnswer info(const QString &md5)
    {
        return m_world->client.get(QString("base-service/md5/%1/info").arg(md5));
    }
    HttpAnswer attach(const QString &fileId)
    {
        return m_world->client.post("document-service/projects/p2/documents",
                                    {{"name", "mine"}, {"type", "file"}, {"file", fileId}});
    }
    HttpAnswer download(const QString &fileId)
    {
        return m_world->client.get(QString("base-service/files/") + fileId);
    }
    static QString fileIdOf(const HttpAnswer &complete)
    {
        return complete.object().value("fsFileId").toString();
    }

    std::unique_ptr<ServiceWorld> m_world;
    const ChunkSender m_secret{ChunkSender::ChunkBytes + 100};
    QString m_anna; //!< has the content in p1
    QString m_ben; //!< contributor in p2
    QString m_fileId;
};

namespace {

constexpr int Chunk = ChunkSender::ChunkBytes;

// Two messages with the same MD5, published by X. Wang and H. Yu in "How to Break MD5 and Other Hash Functions".
const QByteArray collisionA =
    QByteArray::fromHex("d131dd02c5e6eec4693d9a0698aff95c2fcab58712467eab4004583eb8fb7f89"
                        "55ad340609f4b30283e488832571415a085125e8f7cdc99fd91dbdf280373c5b"
                        "d8823e3156348f5bae6dacd436c919c6dd53e2b487da03fd02396306d248cda0"
                        "e99f33420f577ee8ce54b67080a80d1ec69821bcb6a8839396f9652b6ff72a70");
const QByteArray collisionB =
    QByteArray::fromHex("d131dd02c5e6eec4693d9a0698aff95c2fcab50712467eab4004583eb8fb7f89"
                        "55ad340609f4b30283e4888325f1415a085125e8f7cdc99fd91dbd7280373c5b"
                        "d8823e3156348f5bae6dacd436c919c6dd53e23487da03fd02396306d248cda0"
                        "e99f33420f577ee8ce54b67080280d1ec69821bcb6a8839396f965ab6ff72a70");

} // namespace

void TestServiceContentRights::init()
{
    m_world = std::make_unique<ServiceWorld>();
    m_anna = m_world->addMember("anna", "editor");
    m_ben = m_world->service->addUser("ben");
    QVERIFY(m_world->service->addProject("p2", QString()));
    QVERIFY(m_world->service->setRole("p2", "ben", "contributor"));
    m_world->client.setToken(m_anna);
    const QString id = m_world->makeFile("secret", {}, m_secret.content());
    m_fileId = m_world->document(id).value("fileId").toString();
    QVERIFY(!m_fileId.isEmpty());
    m_world->client.setToken(m_ben);
}

void TestServiceContentRights::anotherProjectsContentIsNotTold()
{
    QCOMPARE(info(secret()).status, 404);
    QCOMPARE(m_secret.record(m_world->client).status, 404);
    const HttpAnswer removal =
        m_world->client.remove(QString("base-service/largefiles/") + m_fileId);
    QCOMPARE(removal.status, 404);
    m_world->client.setToken(m_anna);
    QCOMPARE(info(secret()).status, 200);
    QCOMPARE(fileIdOf(m_secret.record(m_world->client)), m_fileId);
}

void TestServiceContentRights::aDocumentNeedsTheRightToItsContent_data()
{
    QTest::addColumn<bool>("isNew");
    QTest::newRow("a new document") << true;
    QTest::newRow("a new version") << false;
}

void TestServiceContentRights::aDocumentNeedsTheRightToItsContent()
{
    QFETCH(bool, isNew);
    HttpAnswer answer;
    if (isNew) {
        answer = attach(m_fileId);
    } else {
        const HttpAnswer own = attach(m_world->upload("own"));
        QCOMPARE(own.status, 200);
        answer = m_world->client.put(
            ServiceWorld::documentPath(own.object().value("_id").toString()), {{"file", m_fileId}});
    }
    QCOMPARE(answer.status, 400);
    const QString refusal = answer.errorText().replace(m_fileId, "X");
    QCOMPARE(attach("X").errorText(), refusal); // nothing tells the two apart
    QCOMPARE(download(m_fileId).status, 404);
}

void TestServiceContentRights::aGuessedChunkMakesNoUploader()
{
    const ChunkSender guess(QByteArray(m_secret.content().size(), 'x'), secret().toLatin1());
    QCOMPARE(counters(guess.send(m_world->client, 0)), QString("1/2"));
    QCOMPARE(guess.send(m_world->client, 1).status, 422);
    QCOMPARE(download(m_fileId).status, 404);
    QCOMPARE(attach(m_fileId).status, 400);
}

void TestServiceContentRights::theSameContentIsReceivedFromAStranger()
{
    QCOMPARE(counters(m_secret.send(m_world->client, 0)), QString("1/2"));
    const HttpAnswer last = m_secret.send(m_world->client, 1);
    QCOMPARE(counters(last), QString("2/2"));
    QCOMPARE(fileIdOf(last), m_fileId); // stored once
    QCOMPARE(attach(m_fileId).status, 200);
    QVERIFY(download(m_fileId).body == m_secret.content());
}

void TestServiceContentRights::knownContentIsInstantForWhoMayHaveIt()
{
    const QString colleague = m_world->service->addUser("carl");
    QVERIFY(m_world->service->setRole("p1", "carl", "contributor"));
    m_world->client.setToken(colleague);
    QCOMPARE(info(secret()).object().value("_id").toString(), m_fileId);
    QCOMPARE(counters(m_secret.record(m_world->client)), QString("2/2"));
    QCOMPARE(fileIdOf(m_secret.send(m_world->client, 0)), m_fileId);
    // That is no upload: the right to the content ends with the role.
    QVERIFY(m_world->service->setRole("p1", "carl", "none"));
    QCOMPARE(download(m_fileId).status, 404);
}

void TestServiceContentRights::twoClientsOfOneUserShareAnUpload()
{
    HttpClient second(m_world->service->baseApi());
    second.setToken(m_ben);
    const ChunkSender file(3 * Chunk, 7);
    QCOMPARE(counters(file.send(m_world->client, 0)), QString("1/3"));
    QCOMPARE(counters(file.send(second, 1)), QString("2/3"));
    const HttpAnswer last = file.send(m_world->client, 2);
    QCOMPARE(counters(last), QString("3/3"));
    QCOMPARE(fileIdOf(file.record(second)), fileIdOf(last));
}

void TestServiceContentRights::othersChunksDoNotHarmAnUpload()
{
    const ChunkSender file(3 * Chunk, 7);
    const ChunkSender garbage(QByteArray(3 * Chunk, 'x'), file.md5().toLatin1());
    QCOMPARE(counters(file.send(m_world->client, 0)), QString("1/3"));
    m_world->client.setToken(m_anna);
    QCOMPARE(file.record(m_world->client).status, 404);
    QCOMPARE(garbage.sendAll(m_world->client).status, 422);
    m_world->client.setToken(m_ben);
    QCOMPARE(counters(file.record(m_world->client)), QString("1/3"));
    QVERIFY(download(fileIdOf(file.sendAll(m_world->client))).body == file.content());
}

void TestServiceContentRights::anotherSizeDoesNotBlockAnMd5()
{
    const ChunkSender file(2 * Chunk, 7);
    const ChunkSender liar(file.content() + "more", file.md5().toLatin1());
    m_world->client.setToken(m_anna);
    QCOMPARE(liar.send(m_world->client, 0).status, 200);
    m_world->client.setToken(m_ben);
    QVERIFY(download(fileIdOf(file.sendAll(m_world->client))).body == file.content());
}

void TestServiceContentRights::whoBeganFirstCannotEndAnothersUpload()
{
    const ChunkSender file(2 * Chunk, 7);
    m_world->client.setToken(m_anna);
    const QString id = file.send(m_world->client, 0).object().value("_id").toString();
    m_world->client.setToken(m_ben);
    QCOMPARE(counters(file.send(m_world->client, 0)), QString("1/2"));
    m_world->client.setToken(m_anna);
    QCOMPARE(m_world->client.remove(QString("base-service/largefiles/") + id).status, 200);
    QCOMPARE(file.record(m_world->client).status, 404);
    m_world->client.setToken(m_ben);
    QCOMPARE(counters(file.record(m_world->client)), QString("1/2"));
    QCOMPARE(counters(file.send(m_world->client, 1)), QString("2/2"));
}

void TestServiceContentRights::collidingFilesAreNeverMixedUp_data()
{
    QTest::addColumn<bool>("isInChunks");
    QTest::newRow("whole") << false;
    QTest::newRow("in chunks") << true;
}

void TestServiceContentRights::collidingFilesAreNeverMixedUp()
{
    QFETCH(bool, isInChunks);
    const auto md5 = QCryptographicHash::hash(collisionA, QCryptographicHash::Md5);
    QVERIFY(collisionA != collisionB);
    QCOMPARE(QCryptographicHash::hash(collisionB, QCryptographicHash::Md5), md5);
    const QString first = m_world->upload(collisionA);
    QVERIFY(!first.isEmpty());

    m_world->client.setToken(m_anna);
    const HttpAnswer second = isInChunks
        ? ChunkSender(collisionB, md5.toHex()).send(m_world->client, 0)
        : m_world->client.postForm("base-service/files", {{"file/b", collisionB}});
    QCOMPARE(second.status, 409);
    QVERIFY2(second.errorText().contains("same MD5"), second.body.constData());
    QCOMPARE(download(first).status, 404);
    // The same bytes are welcome, from whomever they come.
    QCOMPARE(m_world->upload(collisionA), first);
    QCOMPARE(download(first).body, collisionA);
}

void TestServiceContentRights::aContentWithoutSha256IsComparedByItsBytes()
{
    const QString id = m_world->upload(collisionA);
    // As an earlier version has stored it.
    QVERIFY(m_world->runSql("UPDATE file SET sha256 = ''"));
    QCOMPARE(m_world->upload(collisionB), QString());
    QCOMPARE(m_world->upload(collisionA), id);
    QCOMPARE(m_world->sqlValue(QString("SELECT length(sha256) FROM file WHERE id = '%1'").arg(id))
                 .toInt(),
             64);
}

QTEST_GUILESS_MAIN(TestServiceContentRights)
#include "tst_service_content_rights.moc"
