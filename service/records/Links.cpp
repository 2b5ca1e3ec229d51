#include <service/records/Links.h>

#include <service/records/Names.h>
#include <service/records/ServiceError.h>
#include <service/storage/Statement.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace service {

namespace {

constexpr int MaxWordBytes = 255;

QString requireWord(const QJsonValue &value, const QString &what)
{
    if (!value.isString() || value.toString().isEmpty())
        throw ServiceError(
            Refusal::Invalid,
            QStringLiteral("%1 of a link must be text that is not empty.").arg(what));
    requireShortText(value.toString(), what, MaxWordBytes);
    return value.toString();
}

} // namespace

Links::Links(Database &database) : m_database(database) {}

void Links::replace(const QString &documentId, const QJsonArray &links)
{
    execute(m_database, QStringLiteral("DELETE FROM link WHERE document_id = ?"), {documentId});
    int position = 0;
    for (const QJsonValue &link : links) {
        const QJsonObject entry = link.toObject();
        const QString kind =
            requireWord(entry.value(QStringLiteral("kind")), QStringLiteral("The kind"));
        if (!entry.value(QStringLiteral("ids")).isArray())
            throw ServiceError(Refusal::Invalid, QStringLiteral("A link needs an array \"ids\"."));
        const QJsonArray ids = entry.value(QStringLiteral("ids")).toArray();
        for (const QJsonValue &id : ids) {
            execute(m_database,
                    QStringLiteral("INSERT INTO link (document_id, kind, entity_id, position) "
                                   "VALUES (?, ?, ?, ?) ON CONFLICT DO NOTHING"),
                    {documentId, kind, requireWord(id, QStringLiteral("The id")), position++});
        }
    }
}

QJsonArray linksToJson(const QString &links)
{
    QJsonArray result;
    const QJsonArray pairs = QJsonDocument::fromJson(links.toUtf8()).array();
    QString kind;
    QJsonArray ids;
    const auto finish = [&result, &kind, &ids] {
        if (!ids.isEmpty())
            result.append(
                QJsonObject{{QStringLiteral("kind"), kind}, {QStringLiteral("ids"), ids}});
        ids = QJsonArray();
    };
    for (const QJsonValue &pair : pairs) {
        const QString pairKind = pair.toArray().at(0).toString();
        if (pairKind != kind)
            finish();
        kind = pairKind;
        ids.append(pair.toArray().at(1));
    }
    finish();
    return result;
}

} // namespace service
