#include "RequestTable.h"

#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

#include <memory>

namespace {

struct ReplyKind
{
    const char *name;
    int status;
    bool hasBody;
    bool hasWrongShape;
};

constexpr ReplyKind ReplyKinds[] = {
    {"success", 200, true, false},
    {"error status with a body", 403, true, false},
    {"error status without a body", 500, false, false},
    {"empty body", 200, false, false},
    {"body of the wrong shape", 200, false, true},
    {"connection refused", 0, false, false},
};

QByteArray bodyOf(const ReplyKind &kind, const RequestRow &row)
{
    if (kind.hasBody)
        return row.reply;
    if (!kind.hasWrongShape)
        return QByteArray();
    return row.reply.startsWith('[') ? "{\"_id\":\"d1\"}" : "[\"_id\",7]";
}

QString expectedResult(const ReplyKind &kind, const RequestRow &row)
{
    QString success = word(kind.status == 200);
    QString content = kind.hasBody ? row.fromReply : row.fromNothing;
    switch (row.judged) {
    case Judged::ByStatus:
        return success;
    case Judged::ByContent:
        return content;
    case Judged::ByBoth:
        return content + QLatin1String(", ") + success;
    }
    Q_UNREACHABLE();
}

} // namespace
Q_DECLARE_METATYPE(ReplyKind)

void addRequestRows(const std::vector<RequestRow> &rows)
{
    QTest::addColumn<RequestRow>("row");
    QTest::addColumn<ReplyKind>("kind");
    for (const RequestRow &row : rows) {
        for (const ReplyKind &kind : ReplyKinds)
            QTest::addRow("%s: %s", row.name, kind.name) << row << kind;
    }
}

void checkRequestRow()
{
    QFETCH(RequestRow, row);
    QFETCH(ReplyKind, kind);

    GetSoftCache()->setCurrentProjectId("p 1");
    auto server = std::make_unique<ScriptedServer>();
    VellBaseApi::GetInstance().setBaseApi(server->baseApi());
    if (kind.status == 0) {
        server.reset();
        QCOMPARE(row.call(), expectedResult(kind, row));
        return;
    }
    server->enqueue(ScriptedReply::json(bodyOf(kind, row), kind.status));
    QCOMPARE(row.call(), expectedResult(kind, row));

    QCOMPARE(server->requests().size(), 1);
    const ScriptedRequest &request = server->requests().first();
    QCOMPARE(request.verb, row.verb);
    QCOMPARE(request.decodedTarget(), QLatin1Char('/') + row.target);
    QCOMPARE(request.body, row.body);
}

QString word(bool value)
{
    return value ? QString("true") : QString("false");
}
