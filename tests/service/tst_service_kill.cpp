#include <service/ChunkSender.h>
#include <support/ServiceProcess.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonValue>
#include <QMap>
#include <QRandomGenerator>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

//! The program is killed again and again in the middle of its work; what it has acknowledged is there.
class TestServiceKill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void nothingAcknowledgedIsLost_data();
    void nothingAcknowledgedIsLost();

private:
    void workUntilKilled();
    bool doSomething();
    bool makeDocument();
    bool renameDocument();
    bool deleteDocument();
    bool sendChunk();
    void checkDocuments();
    void checkUpload();
    void checkDatabase();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ServiceProcess> m_process;
    HttpClient m_client{QString()};
    QRandomGenerator m_random;
    QMap<QString, QString> m_names; //!< what has been acknowledged: id to name, empty for deleted
    QSet<QString> m_unsure; //!< changed by the request that the kill has cut
    QSet<QString> m_read; //!< contents whose bytes have been compared; they never change
    std::unique_ptr<ChunkSender> m_upload;
    int m_savedChunks = 0;
    int m_uploads = 0;
    int m_counter = 0;
};

namespace {

// 200 in all: each row on a data folder of its own, so that looking after a kill stays quick.
constexpr int Rows = 4;
constexpr int Kills = 50;
const QString documentsPath = "document-service/projects/p1/documents";

} // namespace

void TestServiceKill::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_process = std::make_unique<ServiceProcess>(m_folder->path());
    m_names.clear();
    m_unsure.clear();
    m_read.clear();
    m_savedChunks = 0;
    m_uploads = 0;
    m_counter = 0;
    m_upload = std::make_unique<ChunkSender>(2 * ChunkSender::ChunkBytes + 1);
}

void TestServiceKill::nothingAcknowledgedIsLost_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 row = 1; row <= Rows; ++row)
        QTest::newRow(qPrintable(QString::number(row))) << row;
}

void TestServiceKill::nothingAcknowledgedIsLost()
{
    QFETCH(quint32, seed);
    m_random.seed(seed);
    int acknowledged = 0;
    for (int kill = 0; kill <= Kills; ++kill) {
        QVERIFY(m_process->start());
        m_client.setBaseApi(m_process->baseApi());
        checkDocuments();
        checkUpload();
        if (QTest::currentTestFailed())
            return;
        workUntilKilled();
        checkDatabase();
        if (QTest::currentTestFailed())
            return;
        acknowledged = m_names.size();
    }
    QVERIFY2(acknowledged > Kills, qPrintable(QString::number(acknowledged)));
    QVERIFY2(m_uploads > 0, "no upload came to its end");
}

void TestServiceKill::workUntilKilled()
{
    // By work, not by time, so that a busy machine gets as much of it done.
    for (int left = m_random.bounded(2, 8); left > 0;)
        left -= doSomething() ? 1 : 0;
    QTimer killer;
    killer.setSingleShot(true);
    connect(&killer, &QTimer::timeout, this, [this] { m_process->kill(); });
    killer.start(m_random.bounded(0, 25));
    while (m_process->isRunning()) {
        doSomething();
        QCoreApplication::processEvents();
    }
}

bool TestServiceKill::doSomething()
{
    switch (m_random.bounded(6)) {
    case 0:
        return renameDocument();
    case 1:
        return deleteDocument();
    case 2:
        return sendChunk();
    default:
        return makeDocument();
    }
}

bool TestServiceKill::makeDocument()
{
    ++m_counter;
    const QByteArray content = QByteArray::number(m_counter) + QByteArray(m_counter, 'x');
    const HttpAnswer upload = m_client.postForm("base-service/files", {{"file/f", content}});
    if (!upload.isSuccess())
        return false;
    const QString name = QString("document %1").arg(m_counter);
    const HttpAnswer made =
        m_client.post(documentsPath,
                      {{"name", name},
                       {"type", "file"},
                       {"file", upload.object().value("files").toArray().at(0)}});
    if (!made.isSuccess())
        return false;
    m_names.insert(made.object().value("_id").toString(), name);
    return true;
}

bool TestServiceKill::renameDocument()
{
    const QString id = m_names.key(QString("document %1").arg(m_random.bounded(m_counter + 1)));
    if (id.isEmpty())
        return false;
    const QString name = QString("renamed %1").arg(++m_counter);
    const HttpAnswer answer =
        m_client.put(QString("document-service/documents/") + id, {{"name", name}});
    if (answer.isSuccess())
        m_names.insert(id, name);
    else
        m_unsure.insert(id);
    return answer.isSuccess();
}

bool TestServiceKill::deleteDocument()
{
    const QString id = m_names.key(QString("document %1").arg(m_random.bounded(m_counter + 1)));
    if (id.isEmpty())
        return false;
    const HttpAnswer answer = m_client.remove(QString("document-service/documents/") + id);
    if (answer.isSuccess())
        m_names.insert(id, QString());
    else
        m_unsure.insert(id);
    return answer.isSuccess();
}

bool TestServiceKill::sendChunk()
{
    const HttpAnswer answer = m_upload->send(m_client, m_savedChunks);
    if (!answer.isSuccess())
        return false;
    m_savedChunks = answer.object().value("savedChunk").toInt();
    if (m_savedChunks == m_upload->chunkCount()) {
        m_upload = std::make_unique<ChunkSender>(2 * ChunkSender::ChunkBytes + 7, ++m_uploads);
        m_savedChunks = 0;
    }
    return true;
}

void TestServiceKill::checkDocuments()
{
    QMap<QString, QString> found;
    const HttpAnswer answer = m_client.get(documentsPath);
    QVERIFY2(answer.status == 200, answer.body.constData());
    const QJsonArray list = answer.array();
    for (const QJsonValue &document : list)
        found.insert(document.toObject().value("_id").toString(),
                     document.toObject().value("name").toString());
    for (auto it = m_names.begin(); it != m_names.end(); ++it) {
        if (m_unsure.contains(it.key()))
            it.value() = found.value(it.key()); // done or not, from now on it stays so
        QCOMPARE(found.value(it.key()), it.value());
    }
    m_unsure.clear();
}

void TestServiceKill::checkUpload()
{
    const HttpAnswer record = m_upload->record(m_client);
    QVERIFY2(record.status == 200 || record.status == 404, record.body.constData());
    const int saved = record.object().value("savedChunk").toInt();
    QVERIFY2(saved >= m_savedChunks, "an acknowledged chunk was lost");
    QVERIFY2(saved <= m_savedChunks + 1, "a chunk is counted that was never sent");
    m_savedChunks = saved;
    if (saved == m_upload->chunkCount()) {
        m_upload = std::make_unique<ChunkSender>(2 * ChunkSender::ChunkBytes + 7, ++m_uploads);
        m_savedChunks = 0;
    }
}

void TestServiceKill::checkDatabase()
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "check");
        database.setDatabaseName(m_folder->filePath("records.sqlite"));
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY(query.exec("PRAGMA integrity_check") && query.next());
        QCOMPARE(query.value(0).toString(), QString("ok"));
        QVERIFY(query.exec("PRAGMA foreign_key_check"));
        QVERIFY2(!query.next(), "a foreign key leads nowhere");
        QVERIFY(query.exec("SELECT md5, size FROM file"));
        while (query.next()) {
            const QString md5 = query.value(0).toString();
            QFile content(m_folder->filePath(
                QString("content/%1/%2/%3").arg(md5.left(2), md5.mid(2, 2), md5)));
            QVERIFY2(content.open(QIODevice::ReadOnly), "a content file is missing");
            QCOMPARE(content.size(), query.value(1).toLongLong());
            if (m_read.contains(md5))
                continue;
            m_read.insert(md5);
            QCryptographicHash hash(QCryptographicHash::Md5);
            QVERIFY(hash.addData(&content));
            QCOMPARE(QString::fromLatin1(hash.result().toHex()), md5);
        }
    }
    QSqlDatabase::removeDatabase("check");
}

QTEST_GUILESS_MAIN(TestServiceKill)
#include "tst_service_kill.moc"
