#include <service/records/DocumentJson.h>

#include <service/records/Access.h>
#include <service/records/DocumentFields.h>
#include <service/records/Links.h>
#include <service/records/Names.h>
#include <service/records/Times.h>
#include <service/records/Versions.h>

#include <QJsonArray>
#include <QStringList>

namespace service {

namespace {

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject fileToJson(const QString &fileId, qint64 size, const QString &suffix)
{
    return {{QStringLiteral("fileId"), fileId},
            {QStringLiteral("fileSize"), size},
            {QStringLiteral("suffix"), suffix}};
}

QJsonArray rightsToJson(const Document &document, Access &access)
{
    QJsonArray rights;
    for (const Action action : documentActions()) {
        // Strings, not true and false: clients expect rights as strings.
        const QString value =
            access.may(document, action) ? QStringLiteral("true") : QStringLiteral("false");
        rights.append(QJsonObject{{QStringLiteral("key"), actionKey(action)},
                                  {QStringLiteral("value"), value}});
    }
    return rights;
}

//! Inserts the selected keys; values that are expensive to compute are passed as functions.
class Writer
{
public:
    explicit Writer(const DocumentSelection &selection) : m_selection(selection) {}

    bool wants(const char *key) const
    {
        return m_selection.fields.isEmpty()
            || m_selection.fields.contains(QString::fromLatin1(key));
    }
    void add(const char *key, const QJsonValue &value)
    {
        if (wants(key))
            m_object.insert(QLatin1String(key), value);
    }
    QJsonObject take() { return std::move(m_object); }

private:
    const DocumentSelection &m_selection;
    QJsonObject m_object;
};

} // namespace

DocumentSelection parseSelection(const QString &select, bool linkedEntity)
{
    DocumentSelection selection;
    bool isWithoutEntities = false;
    const QStringList words = select.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (word == QLatin1String("-entities"))
            isWithoutEntities = true;
        else if (!word.startsWith(QLatin1Char('-')))
            selection.fields.insert(word);
    }
    // Clients read the data of a file from the nested object, whichever key they select.
    for (const QLatin1String part :
         {QLatin1String("fileId"), QLatin1String("fileSize"), QLatin1String("suffix")}) {
        if (selection.fields.contains(part))
            selection.fields.insert(QStringLiteral("file"));
    }
    selection.hasEntity = linkedEntity || !isWithoutEntities;
    if (linkedEntity && !selection.fields.isEmpty())
        selection.fields.insert(QStringLiteral("entity"));
    return selection;
}

QJsonObject documentToJson(const Document &document, const DocumentSelection &selection,
                           Access &access)
{
    Writer out(selection);
    for (const DocumentField &field : documentFields()) {
        const bool isSent = field.may(DocumentField::Sent)
            || (field.may(DocumentField::SentForFiles) && !document.isFolder());
        if (isSent && out.wants(field.key))
            out.add(field.key, field.json(document));
    }
    if (!document.isFolder())
        out.add("file", fileToJson(document.fileId, document.size, document.suffix));
    out.add("documentId", document.id);
    out.add("favorite", document.isFavorite);
    if (selection.hasEntity && out.wants("entity"))
        out.add("entity", linksToJson(document.links));
    if (selection.hasPwd)
        out.add("pwd", document.pwd);
    out.add("downloadTime", textOrNull(timeText(document.downloadedAt)));
    if (out.wants("auths"))
        out.add("auths", rightsToJson(document, access));
    QJsonObject object = out.take();
    object.insert(QStringLiteral("_id"), document.id);
    return object;
}

QJsonObject versionToJson(const Version &version)
{
    const QString suffix = suffixOf(version.name);
    return {
        {QStringLiteral("_id"), version.id},
        {QStringLiteral("documentId"), version.documentId},
        {QStringLiteral("number"), version.number},
        {QStringLiteral("name"), version.name},
        {QStringLiteral("suffix"), suffix},
        {QStringLiteral("remark"), version.remark},
        {QStringLiteral("file"), fileToJson(version.fileId, version.fileSize, suffix)},
        {QStringLiteral("fileId"), version.fileId},
        {QStringLiteral("fileSize"), version.fileSize},
        {QStringLiteral("createdAt"), timeText(version.createdAt)},
        {QStringLiteral("createdBy"), version.createdBy},
        {QStringLiteral("updatedAt"), timeText(version.updatedAt)},
    };
}

} // namespace service
