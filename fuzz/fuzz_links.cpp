#include "Fuzzing.h"

#include <VellPublicFun/VellPub.h>

#include <QJsonDocument>
#include <QJsonObject>

// Entity links from arbitrary JSON: what is written from them is read again as it was.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QJsonArray links = QJsonDocument::fromJson(bytes).array();
    const QMap<QString, QStringList> entity = VellPub::jsonArrayToLinksEntity(links);

    QMap<QString, QStringList> plain;
    for (const QJsonValue &link : links) {
        const QVariantMap map = link.toObject().toVariantMap();
        const QVariant kind = map.value(QStringLiteral("kind"));
        if (kind.type() != QVariant::String)
            continue;
        plain[kind.toString()];
        const QVariantList ids = map.value(QStringLiteral("ids")).toList();
        for (const QVariant &id : ids) {
            if (id.type() == QVariant::String)
                plain[kind.toString()].append(id.toString());
        }
    }
    require(entity == plain, "the links of the texts in the array");
    const QJsonArray written = VellPub::linksEntityToJsonArray(entity);
    require(written.size() == entity.size(), "one element for each kind");
    require(VellPub::jsonArrayToLinksEntity(written) == entity, "what is written is read again");
    return 0;
}
