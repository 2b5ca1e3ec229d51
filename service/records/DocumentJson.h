#pragma once

#include <QJsonObject>
#include <QSet>
#include <QString>

namespace service {

class Access;
struct Document;
struct Version;

//! \brief Which keys of a document are sent.
struct DocumentSelection
{
    QSet<QString> fields; //!< empty for all; "_id" is always sent
    bool hasEntity = true;
    bool hasPwd = false;
};

//! Reads the parameters select and linkedEntity: "-entities" leaves the links out, unless linkedEntity is
//! true; a list of names limits the keys.
DocumentSelection parseSelection(const QString &select, bool linkedEntity);

QJsonObject documentToJson(const Document &document, const DocumentSelection &selection,
                           Access &access);

QJsonObject versionToJson(const Version &version);

} // namespace service
