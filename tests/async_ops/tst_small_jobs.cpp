#include <async_ops/AsyncGetDocInfo.h>
#include <async_ops/AsyncGetRecent.h>
#include <async_ops/AsyncRenameDoc.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(const QMetaObject *)

class TestSmallJobs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theMetaObjectsHaveTheirMethods_data();
    void theMetaObjectsHaveTheirMethods();
    void recentFilesAreAskedFor();
    void theFirstArgumentOfTheRecentFilesIsIgnored();
    void recentFilesAreRead_data();
    void recentFilesAreRead();
    void infoIsAskedForAtTheBaseAddress();
    void aRenameSendsTheName();
    void oneDocumentIsRead_data();
    void oneDocumentIsRead();
    void failuresAreRelayed_data();
    void failuresAreRelayed();
    void severalRequestsInTurn();
    void deletionInFlightEmitsNothing();
    void deletionInsideTheSignals_data();
    void deletionInsideTheSignals();
    void signalsTravelThroughQueuedConnectionsBySignature();

private:
    QString target(int request = 0) const { return m_server->requests()[request].decodedTarget(); }

    std::unique_ptr<ScriptedServer> m_server;
};

void TestSmallJobs::init()
{
    m_server = std::make_unique<ScriptedServer>();
    VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    GetSoftCache()->setCurrentProjectId("p 1");
    GetSoftCache()->setCurrentUserId("u 1");
}

void TestSmallJobs::theMetaObjectsHaveTheirMethods_data()
{
    QTest::addColumn<const QMetaObject *>("metaObject");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("parameterType");
    QTest::addColumn<QByteArray>("parameterName");

    const auto rows = [](const QMetaObject &metaObject, const char *signal,
                         const char *parameterType, const char *parameterName, const char *slot) {
        const auto row = [&](int index, QMetaMethod::MethodType type, const char *name,
                             const char *ofType, const char *parameter) {
            QTest::addRow("%s %d", metaObject.className(), index)
                << &metaObject << index << int(type) << QByteArray(name) << QByteArray(ofType)
                << QByteArray(parameter);
        };
        row(0, QMetaMethod::Signal, signal, parameterType, parameterName);
        row(1, QMetaMethod::Signal, "error", "int", "code");
        row(2, QMetaMethod::Slot, slot, "QByteArray", "content");
    };
    rows(AsyncGetRecent::staticMetaObject, "getRecentDocsFinish", "VellDocumentList", "docs",
         "getComplete");
    rows(AsyncGetDocInfo::staticMetaObject, "getDocInfoFinish", "VellDocument", "doc",
         "getComplete");
    rows(AsyncRenameDoc::staticMetaObject, "renameDocFinish", "VellDocument", "doc",
         "updateComplete");
}

void TestSmallJobs::theMetaObjectsHaveTheirMethods()
{
    QFETCH(const QMetaObject *, metaObject);
    QFETCH(int, index);
    QFETCH(int, type);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, parameterType);
    QFETCH(QByteArray, parameterName);

    QCOMPARE(metaObject->methodCount() - metaObject->methodOffset(), 3);
    const QMetaMethod method = metaObject->method(metaObject->methodOffset() + index);
    QCOMPARE(int(method.methodType()), type);
    QCOMPARE(method.access(),
             type == QMetaMethod::Slot ? QMetaMethod::Private : QMetaMethod::Public);
    QCOMPARE(method.name(), name);
    QCOMPARE(method.parameterTypes(), QList<QByteArray>({parameterType}));
    QCOMPARE(method.parameterNames(), QList<QByteArray>({parameterName}));
}

void TestSmallJobs::recentFilesAreAskedFor()
{
    AsyncGetRecent job;
    job.getRecentDocs(QString(), "doc");
    QTRY_COMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests()[0].verb, QByteArray("GET"));
    QCOMPARE(target(),
             QString("/document-service/projects/p 1/documents?where={\"type\":\"file\","
                     "\"createdBy\":\"u 1\"}&category=doc&order=-createdAt&limit=50"
                     "&linkedEntity=true"));
}

void TestSmallJobs::theFirstArgumentOfTheRecentFilesIsIgnored()
{
    AsyncGetRecent job;
    job.getRecentDocs("p2", "doc");
    job.getRecentDocs("p3", "doc");
    QTRY_COMPARE(m_server->requests().size(), 2);
    QCOMPARE(target(0), target(1));
}

void TestSmallJobs::recentFilesAreRead_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QStringList>("documentIds");
    QTest::newRow("own identifiers fill gaps")
        << QByteArray(R"([{"_id":"v1","documentId":"d1"},{"_id":"d2"}])")
        << QStringList({"d1", "d2"});
    QTest::newRow("empty list") << QByteArray("[]") << QStringList();
    QTest::newRow("an object") << QByteArray("{}") << QStringList();
    QTest::newRow("empty") << QByteArray() << QStringList();
    QTest::newRow("no JSON") << QByteArray("<html>") << QStringList();
    QTest::newRow("elements of another kind")
        << QByteArray(R"([7,{"_id":"d1"}])") << QStringList({QString(), "d1"});
}

void TestSmallJobs::recentFilesAreRead()
{
    QFETCH(QByteArray, reply);
    QFETCH(QStringList, documentIds);
    m_server->enqueue(ScriptedReply::json(reply));
    AsyncGetRecent job;
    QSignalSpy finished(&job, &AsyncGetRecent::getRecentDocsFinish);
    QSignalSpy failed(&job, &AsyncGetRecent::error);
    job.getRecentDocs(QString(), QString());
    QTRY_COMPARE(finished.size(), 1);
    QStringList found;
    for (const VellDocument &doc : finished[0][0].value<VellDocumentList>())
        found.append(doc.documentId);
    QCOMPARE(found, documentIds);
    QCOMPARE(failed.size(), 0);
}

// Beside "document-service/", unlike every other request.
void TestSmallJobs::infoIsAskedForAtTheBaseAddress()
{
    AsyncGetDocInfo job;
    job.getDocInfo("d 1");
    QTRY_COMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests()[0].verb, QByteArray("GET"));
    QCOMPARE(target(), QString("/documents/d 1?info=true&pwd=true"));
}

void TestSmallJobs::aRenameSendsTheName()
{
    AsyncRenameDoc job;
    job.renameDoc("d 1", "图纸 \"2\".dwg");
    QTRY_COMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests()[0].verb, QByteArray("PUT"));
    QCOMPARE(target(), QString("/document-service/documents/d 1"));
    QCOMPARE(m_server->requests()[0].body, QByteArray("{\"name\":\"图纸 \\\"2\\\".dwg\"}"));
}

void TestSmallJobs::oneDocumentIsRead_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("type");
    QTest::newRow("a document") << QByteArray(R"({"_id":"d1","type":"file"})") << "d1"
                                << "file";
    QTest::newRow("an empty object") << QByteArray("{}") << QString() << QString();
    QTest::newRow("empty") << QByteArray() << QString() << "dir";
    QTest::newRow("no JSON") << QByteArray("<html>") << QString() << "dir";
    QTest::newRow("a list") << QByteArray(R"([{"_id":"d1"}])") << QString() << "dir";
}

void TestSmallJobs::oneDocumentIsRead()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, id);
    QFETCH(QString, type);
    m_server->enqueue(ScriptedReply::json(reply));
    m_server->enqueue(ScriptedReply::json(reply));
    AsyncGetDocInfo info;
    AsyncRenameDoc rename;
    QSignalSpy fetched(&info, &AsyncGetDocInfo::getDocInfoFinish);
    QSignalSpy renamed(&rename, &AsyncRenameDoc::renameDocFinish);
    info.getDocInfo("d1");
    rename.renameDoc("d1", "x");
    QTRY_COMPARE(fetched.size() + renamed.size(), 2);
    for (const VellDocument &doc :
         {fetched[0][0].value<VellDocument>(), renamed[0][0].value<VellDocument>()}) {
        QCOMPARE(doc._id, id);
        QCOMPARE(doc.type, type);
    }
}

void TestSmallJobs::failuresAreRelayed_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("code");
    QTest::newRow("403") << 403 << int(QNetworkReply::ContentAccessDenied);
    QTest::newRow("404") << 404 << int(QNetworkReply::ContentNotFoundError);
    QTest::newRow("500") << 500 << int(QNetworkReply::InternalServerError);
    QTest::newRow("no server") << 0 << int(QNetworkReply::ConnectionRefusedError);
}

void TestSmallJobs::failuresAreRelayed()
{
    QFETCH(int, status);
    QFETCH(int, code);
    if (status == 0)
        m_server.reset();
    else
        m_server->setHandler([status](const ScriptedRequest &) {
            return ScriptedReply::json(R"({"_id":"d1"})", status);
        });
    AsyncGetRecent recent;
    AsyncGetDocInfo info;
    AsyncRenameDoc rename;
    QSignalSpy finished[] = {QSignalSpy(&recent, &AsyncGetRecent::getRecentDocsFinish),
                             QSignalSpy(&info, &AsyncGetDocInfo::getDocInfoFinish),
                             QSignalSpy(&rename, &AsyncRenameDoc::renameDocFinish)};
    QSignalSpy failed[] = {QSignalSpy(&recent, &AsyncGetRecent::error),
                           QSignalSpy(&info, &AsyncGetDocInfo::error),
                           QSignalSpy(&rename, &AsyncRenameDoc::error)};
    recent.getRecentDocs(QString(), QString());
    info.getDocInfo("d1");
    rename.renameDoc("d1", "x");
    for (int i = 0; i < 3; ++i) {
        QTRY_COMPARE(failed[i].size(), 1);
        QCOMPARE(failed[i][0][0].toInt(), code);
        QCOMPARE(finished[i].size(), 0);
    }
}

void TestSmallJobs::severalRequestsInTurn()
{
    AsyncGetDocInfo job;
    QSignalSpy finished(&job, &AsyncGetDocInfo::getDocInfoFinish);
    QSignalSpy failed(&job, &AsyncGetDocInfo::error);
    m_server->enqueue(ScriptedReply::json(R"({"_id":"d1"})"));
    m_server->enqueue(ScriptedReply::json("", 404));
    m_server->enqueue(ScriptedReply::json(R"({"_id":"d3"})"));
    for (int i = 1; i <= 3; ++i) {
        job.getDocInfo(QString::number(i));
        QTRY_COMPARE(finished.size() + failed.size(), i);
    }
    QCOMPARE(finished.size(), 2);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(finished[1][0].value<VellDocument>()._id, QString("d3"));
}

void TestSmallJobs::deletionInFlightEmitsNothing()
{
    m_server->setHandler([](const ScriptedRequest &) {
        return ScriptedReply::endingAs(ScriptedReply::Ending::Withheld);
    });
    auto *job = new AsyncRenameDoc;
    QSignalSpy finished(job, &AsyncRenameDoc::renameDocFinish);
    QSignalSpy failed(job, &AsyncRenameDoc::error);
    job->renameDoc("d1", "x");
    QTRY_COMPARE(m_server->requests().size(), 1);
    delete job;
    QTest::qWait(50);
    QCOMPARE(finished.size(), 0);
    QCOMPARE(failed.size(), 0);
}

void TestSmallJobs::deletionInsideTheSignals_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("finish") << 200;
    QTest::newRow("error") << 500;
}

void TestSmallJobs::deletionInsideTheSignals()
{
    QFETCH(int, status);
    m_server->setHandler([status](const ScriptedRequest &) {
        return ScriptedReply::json(R"({"_id":"d1"})", status);
    });
    int deleted = 0;
    const auto drop = [&deleted](QObject *job) {
        return [&deleted, job] {
            delete job;
            ++deleted;
        };
    };
    auto *recent = new AsyncGetRecent;
    auto *info = new AsyncGetDocInfo;
    auto *rename = new AsyncRenameDoc;
    connect(recent, &AsyncGetRecent::getRecentDocsFinish, this, drop(recent));
    connect(recent, &AsyncGetRecent::error, this, drop(recent));
    connect(info, &AsyncGetDocInfo::getDocInfoFinish, this, drop(info));
    connect(info, &AsyncGetDocInfo::error, this, drop(info));
    connect(rename, &AsyncRenameDoc::renameDocFinish, this, drop(rename));
    connect(rename, &AsyncRenameDoc::error, this, drop(rename));
    recent->getRecentDocs(QString(), QString());
    info->getDocInfo("d1");
    rename->renameDoc("d1", "x");
    QTRY_COMPARE(deleted, 3);
    QTest::qWait(20);
}

namespace {

class Receiver : public QObject
{
    Q_OBJECT

public:
    int lists = 0;
    QString id;

public Q_SLOTS:
    void takeList(const VellDocumentList &docs) { lists += docs.size(); }
    void takeDocument(const VellDocument &doc) { id = doc._id; }
};

} // namespace

void TestSmallJobs::signalsTravelThroughQueuedConnectionsBySignature()
{
    m_server->enqueue(ScriptedReply::json(R"([{"_id":"d1"},{"_id":"d2"}])"));
    Receiver receiver;
    AsyncGetRecent recent;
    AsyncGetDocInfo info;
    QVERIFY(connect(&recent, SIGNAL(getRecentDocsFinish(VellDocumentList)), &receiver,
                    SLOT(takeList(VellDocumentList)), Qt::QueuedConnection));
    QVERIFY(connect(&info, SIGNAL(getDocInfoFinish(VellDocument)), &receiver,
                    SLOT(takeDocument(VellDocument)), Qt::QueuedConnection));
    recent.getRecentDocs(QString(), QString());
    QTRY_COMPARE(receiver.lists, 2);
    m_server->enqueue(ScriptedReply::json(R"({"_id":"d9"})"));
    info.getDocInfo("d9");
    QTRY_COMPARE(receiver.id, QString("d9"));
}

QTEST_GUILESS_MAIN(TestSmallJobs)
#include "tst_small_jobs.moc"
