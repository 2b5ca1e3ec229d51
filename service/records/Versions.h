#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace service {

class Database;
struct Document;

//! A version of a document.
struct Version
{
    QString id;
    QString documentId;
    int number = 0; //!< from 1
    QString fileId;
    qint64 fileSize = 0;
    QString name;
    QString remark;
    qint64 createdAt = 0;
    QString createdBy;
    qint64 updatedAt = 0;
};

//! \brief The table of versions. Changes require a Transaction.
class Versions
{
public:
    explicit Versions(Database &database);

    //! Adds the present content of the document as its newest version.
    void add(const Document &document, const QString &userId);

    //! Lists the versions, newest first, or oldest first if \a isAscending is true.
    QList<Version> list(const QString &documentId, bool isAscending);
    std::optional<Version> find(const QString &id);
    qint64 count(const QString &documentId);
    void setRemark(const QString &id, const QString &remark);
    //! Returns true if it is the newest version, whose content the document has.
    bool isCurrent(const Version &version);
    void remove(const QString &id);

private:
    Database &m_database;
};

} // namespace service
