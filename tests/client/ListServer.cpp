#include "ListServer.h"

#include <VellNetwork/NetworkSettings.h>

#include <QSignalSpy>
#include <QTest>
#include <QUrlQuery>

#include <algorithm>

namespace {

constexpr int OpenMs = 30'000;

QUrlQuery queryOf(const ScriptedRequest &request)
{
    return QUrlQuery(QString::fromLatin1(request.target.mid(request.target.indexOf('?') + 1)));
}

QString value(const QUrlQuery &query, const char *key)
{
    return query.queryItemValue(QLatin1String(key), QUrl::FullyDecoded);
}

} // namespace

ListServer::ListServer(int count) : service(&session)
{
    const int digits = QString::number(count - 1).size();
    for (int i = 0; i < count; ++i)
        names.append(QStringLiteral("%1.dwg").arg(i, digits, 10, QLatin1Char('0')));
    m_server.setHandler([this](const ScriptedRequest &request) { return answer(request); });
    VellConnection connection;
    connection.address = m_server.baseApi();
    connection.proxy = NetworkSettings::noProxy();
    const QSignalSpy opened(&session, &VellSession::opened);
    session.open(connection);
    if (!QTest::qWaitFor([&opened] { return !opened.isEmpty(); }, OpenMs))
        qFatal("the session does not open");
    session.openProject(QStringLiteral("p1"));
    m_server.clearRequests();
}

QList<VellDocument> ListServer::documents(int first, int last) const
{
    QList<VellDocument> documents;
    for (int i = first; i <= last; ++i) {
        VellDocument document;
        document._id = QStringLiteral("id-") + names.at(i);
        document.name = names.at(i);
        document.type = QStringLiteral("file");
        document.suffix = QStringLiteral("dwg");
        document.order = 0;
        documents.append(document);
    }
    return documents;
}

QStringList ListServer::takeRequests()
{
    QStringList requests;
    for (const ScriptedRequest &request : m_server.requests()) {
        const QUrlQuery query = queryOf(request);
        if (query.hasQueryItem(QStringLiteral("only_count"))) {
            requests.append(QStringLiteral("count"));
            continue;
        }
        const QString what = value(query, "select") == QLatin1String("name")
            ? QStringLiteral("names")
            : value(query, "order");
        requests.append(
            QStringLiteral("%1 %2+%3").arg(what, value(query, "skip"), value(query, "limit")));
    }
    m_server.clearRequests();
    return requests;
}

ScriptedReply ListServer::answer(const ScriptedRequest &request)
{
    if (request.target.contains("base-service/me"))
        return ScriptedReply::json(R"({"_id":"u1","name":"Ann","projects":[]})");
    if (failureStatus != 200)
        return ScriptedReply::json(R"({"error":"not now"})", failureStatus);
    const QUrlQuery query = queryOf(request);
    if (query.hasQueryItem(QStringLiteral("only_count")))
        return ScriptedReply::json("{\"count\":" + QByteArray::number(names.size()) + "}");
    QStringList list = names;
    if (value(query, "order").contains(QLatin1String("-name")))
        std::reverse(list.begin(), list.end());
    QByteArray array;
    const QStringList page = list.mid(value(query, "skip").toInt(), value(query, "limit").toInt());
    for (const QString &name : page)
        array += (array.isEmpty() ? "" : ",") + json(name);
    return ScriptedReply::json('[' + array + ']');
}

QByteArray ListServer::json(const QString &name) const
{
    return R"({"_id":"id-)" + name.toUtf8() + R"(","name":")" + name.toUtf8()
        + R"(","type":"file","parentId":null,"order":0,"file":{"suffix":"dwg"}})";
}
