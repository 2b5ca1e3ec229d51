#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringList>

//! \brief The condition of a list query.
//!
//! A value type. A default-constructed condition matches every entry of the top level. All conditions that are set must be
//! met. The spelling of the name is part of the public interface.
//!
//! \since 0.1
struct VellDocumentConditon
{
    bool isAllTime =
        true; //!< false: only documents changed from #startTime to the end of the day of #endTime
    QDateTime startTime; //!< start of the time span, inclusive
    QDateTime
        endTime; //!< last day of the time span: one day is added for the exclusive upper bound
    QString searchName; //!< regular expression for the name, not case-sensitive, sent unchanged
    QString category; //!< the service's category word, for example "recycle"
    bool isAllUser = true; //!< false: only documents last changed by one of #userIds
    QStringList userIds; //!< an empty list matches nothing
    QString parentId; //!< the folder whose entries are listed; empty: the top level
    QString projectId; //!< set by the library; queries use the open project
    QString type; //!< "dir" or "file"; empty: both
    QString documentId; //!< a document identifier to match
    QString name; //!< the exact name; takes precedence over #searchName
    bool isFrequent = false; //!< only the user's frequently used documents
    bool hasParentId = true; //!< false: #parentId is ignored
    bool isDeep = false; //!< also below #parentId, at every depth
    bool noSelect = false; //!< select every field; takes precedence over the next two
    bool selectName = false; //!< select the name only; takes precedence over #selectTree
    bool selectTree = false; //!< select the fields of a folder tree, at every depth
    bool reservedFlag = false; //!< for the caller; no query uses it
    int recordType =
        0; //!< only documents with the user's mark of this type, see VellRecordType; 0 or less: all
};

//! \brief The order of a list query.
//!
//! \since 0.1
struct VellDocumentSort
{
    QString sortField =
        QStringLiteral("updatedAt"); //!< the service's field, see the KEY_ constants
    bool isAsc = false; //!< ascending instead of descending
    //! Folders before files, then by position, then latest change first, whatever the two fields above say.
    //! Used by VellDocumentData::getDocumentsRange() only.
    bool isDefault = true;
};

Q_DECLARE_METATYPE(VellDocumentConditon)
Q_DECLARE_METATYPE(VellDocumentSort)
