#pragma once

#include <QJsonObject>
#include <QSet>
#include <QString>

namespace service {

class Access;
struct Document;
struct Version;

//! \brief The keys of a document that are sent.
struct DocumentSelection
{
    QSet<QString> fields; //!< empty for all; "_id" is always sent
    bool hasEntity = true;
    bool hasPwd = false;
};

//! Parses the parameters select and linkedEntity: "-entities" excludes the links, unless linkedEntity is true; a list of keys selects
//! only these.
DocumentSelection parseSelection(const QString &select, bool linkedEntity);

QJsonObject documentToJson(const Document &document, const DocumentSelection &selection,
                           Access &access);

QJsonObject versionToJson(const Version &version);

} // namespace service
