#include "support/ScriptedServer.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Ending = ScriptedReply::Ending;
using std::chrono::milliseconds;

namespace {

enum class Verb { Get, Post, Put, Delete };

QNetworkReply *send(Verb verb, const QString &url)
{
    const QJsonObject body{{"a", 1}};
    switch (verb) {
    case Verb::Get:
        return NetworkManager::instance()->get(url);
    case Verb::Post:
        return NetworkManager::instance()->postJson(url, body);
    case Verb::Put:
        return NetworkManager::instance()->putJson(url, body);
    case Verb::Delete:
        break;
    }
    return NetworkManager::instance()->deleteResource(url);
}

ScriptedReply redirect(int status, const QString &target)
{
    ScriptedReply reply;
    reply.status = status;
    reply.body = "moved";
    reply.headers.insert("Location", target.toUtf8());
    return reply;
}

QNetworkReply::NetworkError errorOf(Verb verb, const QString &url)
{
    NetworkEventLoop loop(send(verb, url));
    loop.exec();
    return loop.error();
}

} // namespace

Q_DECLARE_METATYPE(Verb)

//! Which redirects are followed, and what arrives behind them.
class TestRedirects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void redirectsAreFollowed_data();
    void redirectsAreFollowed();
    void redirectedBodiesArriveWhole();
    void readingWhatCameOfAChangeMayBeRedirectedAgain();
    void lostConnectionBehindARedirectNeverRepeatsAChange();
    void redirectsThatWouldLoseTheChangeAreRefused_data();
    void redirectsThatWouldLoseTheChangeAreRefused();
    void otherServersAreFollowedOnlyWithoutToken();
    void redirectsInACircleEnd();
    void redirectsToOtherSchemesAreRefused_data();
    void redirectsToOtherSchemesAreRefused();

private:
    std::unique_ptr<ScriptedServer> m_server;
    QString m_url;
};

void TestRedirects::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_url = m_server->baseApi() + QLatin1String("x");
    NetworkSettings::instance().setStallTimeout(milliseconds(10000));
    NetworkSettings::instance().setAccessToken(QString());
}

void TestRedirects::cleanup()
{
    m_server.reset();
}

void TestRedirects::redirectsAreFollowed_data()
{
    QTest::addColumn<Verb>("verb");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("lastVerb");
    for (const int status : {301, 302, 303, 307, 308})
        QTest::addRow("GET %d", status) << Verb::Get << status << QByteArray("GET");
    for (const int status : {307, 308}) {
        QTest::addRow("POST %d", status) << Verb::Post << status << QByteArray("POST");
        QTest::addRow("PUT %d", status) << Verb::Put << status << QByteArray("PUT");
        QTest::addRow("DELETE %d", status) << Verb::Delete << status << QByteArray("DELETE");
    }
    QTest::newRow("POST 303") << Verb::Post << 303 << QByteArray("GET");
    QTest::newRow("PUT 303") << Verb::Put << 303 << QByteArray("GET");
    QTest::newRow("DELETE 303") << Verb::Delete << 303 << QByteArray("GET");
}

void TestRedirects::redirectsAreFollowed()
{
    QFETCH(Verb, verb);
    QFETCH(int, status);
    QFETCH(QByteArray, lastVerb);
    m_server->setHandler([status](const ScriptedRequest &request) {
        return request.target == "/x" ? redirect(status, "/y") : ScriptedReply::json("{\"b\":2}");
    });
    NetworkSettings::instance().setAccessToken("t0k3n");
    QCOMPARE(errorOf(verb, m_url), QNetworkReply::NoError);
    const ScriptedRequest &last = m_server->requests().last();
    QCOMPARE(last.target, QByteArray("/y"));
    QCOMPARE(last.verb, lastVerb);
    const bool hasBody = lastVerb.startsWith('P');
    QCOMPARE(last.body, hasBody ? QByteArray("{\"a\":1}") : QByteArray());
    QCOMPARE(last.headers.value("content-type"),
             hasBody ? QByteArray("application/json") : QByteArray());
    QCOMPARE(last.headers.value("authorization"), QByteArray("Bearer t0k3n"));
}

void TestRedirects::redirectedBodiesArriveWhole()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        return request.target == "/x" ? redirect(308, "/y") : ScriptedReply::json("{}");
    });
    for (int i = 0; i < 300; ++i) {
        m_server->clearRequests();
        QCOMPARE(errorOf(Verb::Put, m_url), QNetworkReply::NoError);
        QCOMPARE(m_server->requests().size(), 2);
        QCOMPARE(m_server->requests().last().target, QByteArray("/y"));
        for (const ScriptedRequest &request : m_server->requests())
            QCOMPARE(request.body, QByteArray("{\"a\":1}"));
    }
}

void TestRedirects::readingWhatCameOfAChangeMayBeRedirectedAgain()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        if (request.target == "/x")
            return redirect(303, "/y");
        return request.target == "/y" ? redirect(302, "/z") : ScriptedReply::json("{}");
    });
    QCOMPARE(errorOf(Verb::Post, m_url), QNetworkReply::NoError);
    QCOMPARE(m_server->requests().last().target, QByteArray("/z"));
}

void TestRedirects::lostConnectionBehindARedirectNeverRepeatsAChange()
{
    int changes = 0;
    m_server->setHandler([&](const ScriptedRequest &request) {
        if (request.target == "/x")
            return redirect(307, "/y");
        return ++changes == 1 ? ScriptedReply::endingAs(Ending::Dropped)
                              : ScriptedReply::json("{}");
    });
    NetworkEventLoop loop(send(Verb::Post, m_url));
    loop.exec();
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(changes, 1);
}

void TestRedirects::redirectsThatWouldLoseTheChangeAreRefused_data()
{
    QTest::addColumn<Verb>("verb");
    QTest::addColumn<int>("status");
    for (const int status : {301, 302}) {
        QTest::addRow("POST %d", status) << Verb::Post << status;
        QTest::addRow("PUT %d", status) << Verb::Put << status;
        QTest::addRow("DELETE %d", status) << Verb::Delete << status;
    }
}

void TestRedirects::redirectsThatWouldLoseTheChangeAreRefused()
{
    QFETCH(Verb, verb);
    QFETCH(int, status);
    m_server->setHandler([status](const ScriptedRequest &request) {
        return request.target == "/x" ? redirect(status, "/y") : ScriptedReply::json("{}");
    });
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    NetworkEventLoop loop(send(verb, m_url));
    loop.exec();
    QCOMPARE(loop.error(), QNetworkReply::InsecureRedirectError);
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(failures.size(), 1);
    QTest::qWait(50);
    for (const ScriptedRequest &request : m_server->requests())
        QCOMPARE(request.target, QByteArray("/x"));
}

void TestRedirects::otherServersAreFollowedOnlyWithoutToken()
{
    ScriptedServer other;
    other.setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    m_server->setHandler([&](const ScriptedRequest &) {
        return redirect(302, other.baseApi() + QLatin1String("y"));
    });
    QCOMPARE(errorOf(Verb::Get, m_url), QNetworkReply::NoError);
    QCOMPARE(other.requests().size(), 1);

    NetworkSettings::instance().setAccessToken("t0k3n");
    QCOMPARE(errorOf(Verb::Get, m_url), QNetworkReply::InsecureRedirectError);
    QTest::qWait(50);
    QCOMPARE(other.requests().size(), 1);
    QCOMPARE(other.connectionCount(), 1);
}

void TestRedirects::redirectsInACircleEnd()
{
    m_server->setHandler([](const ScriptedRequest &) { return redirect(302, "/x"); });
    QCOMPARE(errorOf(Verb::Get, m_url), QNetworkReply::TooManyRedirectsError);
    QVERIFY(m_server->requests().size() < 200);
}

void TestRedirects::redirectsToOtherSchemesAreRefused_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("a file") << "file:///etc/hostname";
    QTest::newRow("data") << "data:application/json,{}";
    QTest::newRow("ftp") << "ftp://127.0.0.1/x";
}

void TestRedirects::redirectsToOtherSchemesAreRefused()
{
    QFETCH(QString, target);
    m_server->setHandler([target](const ScriptedRequest &) { return redirect(302, target); });
    NetworkEventLoop loop(NetworkManager::instance()->get(m_url));
    loop.exec();
    QVERIFY(!loop.isSuccessful());
    QVERIFY(loop.error() != QNetworkReply::NoError);
    QCOMPARE(loop.content(), QByteArray());
}

QTEST_GUILESS_MAIN(TestRedirects)

#include "tst_redirects.moc"
