#include <velldoc/output/Json.h>

#include <document_model/VellDocument.h>
#include <file_types/FileTypes.h>

#include <VellPublicFun/VellPub.h>

namespace velldoc {

namespace {

QJsonValue timeOrNull(const QDateTime &time)
{
    return time.isValid() ? QJsonValue(VellPub::getQStringByDateTime(time)) : QJsonValue();
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

} // namespace

QJsonObject documentJson(const VellDocument &document, const QString &path)
{
    const bool isFile = document.type == QLatin1String("file");
    QJsonObject rights;
    for (auto it = document.auths.begin(); it != document.auths.end(); ++it)
        rights.insert(it.key(), it.value());
    QJsonObject links;
    for (auto it = document.entity.begin(); it != document.entity.end(); ++it)
        links.insert(it.key(), QJsonArray::fromStringList(it.value()));
    QJsonObject object{
        {QStringLiteral("id"), document._id},
        {QStringLiteral("name"), document.name},
        {QStringLiteral("type"), document.type},
        {QStringLiteral("parentId"), textOrNull(document.parentId)},
        {QStringLiteral("category"), document.category},
        {QStringLiteral("order"), document.order},
        {QStringLiteral("remark"), document.remark},
        {QStringLiteral("favorite"), document.favorite},
        {QStringLiteral("recycled"), document.recycle != 0},
        {QStringLiteral("size"), isFile ? QJsonValue(document.fileSize) : QJsonValue()},
        {QStringLiteral("suffix"), isFile ? QJsonValue(document.suffix) : QJsonValue()},
        {QStringLiteral("kind"),
         isFile ? QJsonValue(VellPubDoc::getFileType(document.suffix)) : QJsonValue()},
        {QStringLiteral("fileId"), textOrNull(document.fileId)},
        {QStringLiteral("createdAt"), timeOrNull(document.createdAt)},
        {QStringLiteral("createdBy"), document.createdBy},
        {QStringLiteral("updatedAt"), timeOrNull(document.updatedAt)},
        {QStringLiteral("updatedBy"), document.updatedBy},
        {QStringLiteral("links"), links},
        {QStringLiteral("rights"), rights},
    };
    if (!path.isEmpty())
        object.insert(QStringLiteral("path"), path);
    return object;
}

QJsonObject versionJson(const VellDocument &version, int number)
{
    return {
        {QStringLiteral("id"), version._id},
        {QStringLiteral("number"), number},
        {QStringLiteral("name"), version.name},
        {QStringLiteral("size"), version.fileSize},
        {QStringLiteral("fileId"), version.fileId},
        {QStringLiteral("remark"), version.remark},
        {QStringLiteral("createdAt"), timeOrNull(version.createdAt)},
        {QStringLiteral("createdBy"), version.createdBy},
    };
}

} // namespace velldoc
