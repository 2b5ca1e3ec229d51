#include <VellPublicFun/VellPub.h>

#include <QJsonObject>

QMap<QString, QStringList> VellPub::jsonArrayToLinksEntity(const QJsonArray &links)
{
    QMap<QString, QStringList> entity;
    for (const QJsonValue &link : links) {
        const QJsonValue kind = link.toObject().value(QLatin1String("kind"));
        if (!kind.isString())
            continue;
        QStringList &ids = entity[kind.toString()];
        const QJsonArray elements = link.toObject().value(QLatin1String("ids")).toArray();
        for (const QJsonValue &id : elements) {
            if (id.isString())
                ids.append(id.toString());
        }
    }
    return entity;
}

QJsonArray VellPub::linksEntityToJsonArray(const QMap<QString, QStringList> &links)
{
    QJsonArray array;
    for (auto link = links.cbegin(); link != links.cend(); ++link) {
        array.append(QJsonObject{{QStringLiteral("kind"), link.key()},
                                 {QStringLiteral("ids"), QJsonArray::fromStringList(*link)}});
    }
    return array;
}
