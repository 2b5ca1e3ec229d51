#include "DocumentTexts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace {

QString id(int number)
{
    return QStringLiteral("%1").arg(number, 24, 16, QLatin1Char('0'));
}

QJsonObject shortRecord(int number)
{
    return {
        {QStringLiteral("_id"), id(number)},
        {QStringLiteral("name"), QStringLiteral("Level %1, plan.dwg").arg(number)},
        {QStringLiteral("parentId"), id(0x7fffffff)},
        {QStringLiteral("projectId"), QStringLiteral("bridge")},
        {QStringLiteral("category"), QStringLiteral("model")},
        {QStringLiteral("type"), QStringLiteral("file")},
        {QStringLiteral("order"), number},
        {QStringLiteral("createdAt"), QStringLiteral("2020-05-31T08:00:00.000Z")},
        {QStringLiteral("updatedAt"), QStringLiteral("2020-05-31T08:00:00.000Z")},
        {QStringLiteral("createdBy"), id(1)},
        {QStringLiteral("file"),
         QJsonObject{{QStringLiteral("fileId"), id(number)},
                     {QStringLiteral("fileSize"), 1'000'000 + number},
                     {QStringLiteral("suffix"), QStringLiteral("dwg")}}},
    };
}

QJsonArray rights()
{
    QJsonArray rights;
    for (const char *key : {"delete", "download", "edit", "share", "upload"})
        rights.append(QJsonObject{{QStringLiteral("key"), QString::fromLatin1(key)},
                                  {QStringLiteral("value"), QStringLiteral("true")}});
    return rights;
}

QJsonObject fullRecord(int number)
{
    QJsonObject record = shortRecord(number);
    const std::pair<const char *, QJsonValue> fields[] = {
        {"documentId", id(number)},
        {"hostId", QStringLiteral("host")},
        {"hostType", 1},
        {"recycle", 0},
        {"favorite", number % 7 == 0},
        {"previewId", QString()},
        {"remark", QStringLiteral("第 %1 版").arg(number % 9)},
        {"status", QString()},
        {"fileId", id(number)},
        {"fileSize", 1'000'000 + number},
        {"suffix", QStringLiteral("dwg")},
        {"updatedBy", id(2)},
        {"downloadTime", QJsonValue()},
        {"entity",
         QJsonArray{QJsonObject{{QStringLiteral("kind"), QStringLiteral("beam")},
                                {QStringLiteral("ids"), QJsonArray{id(number), id(number + 1)}}}}},
        {"auths", rights()},
    };
    for (const auto &[key, value] : fields)
        record.insert(QLatin1String(key), value);
    return record;
}

} // namespace

QByteArray documentList(int count, RecordShape shape)
{
    QJsonArray list;
    for (int i = 0; i < count; ++i)
        list.append(shape == RecordShape::Short ? shortRecord(i) : fullRecord(i));
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}
