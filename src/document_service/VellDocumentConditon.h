#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringList>

//! \brief What a list query asks for.
//!
//! A plain value that the caller builds, fills and passes. A default condition asks for every entry of the
//! top level. The conditions that are set must all hold. The name's spelling is that of the public
//! interface.
struct VellDocumentConditon
{
    bool isAllTime =
        true; //!< false: only what was changed from #startTime to the end of #endTime's day
    QDateTime startTime; //!< first instant of the span, inclusive
    QDateTime endTime; //!< last day of the span: one day is added for the exclusive upper bound
    QString searchName; //!< regular expression for the name, not case-sensitive, sent as it stands
    QString category; //!< the service's category word, for example "recycle"
    bool isAllUser = true; //!< false: only what one of #userIds changed last
    QStringList userIds; //!< an empty list matches nothing
    QString parentId; //!< the folder whose entries are wanted; empty: the top level
    QString projectId; //!< set by the library for the caller; queries take the open project
    QString type; //!< "dir" or "file"; empty: both
    QString documentId; //!< a document identifier to match
    QString name; //!< the exact name; beats #searchName when both are set
    bool isFrequent = false; //!< only the user's frequently used documents
    bool hasParentId = true; //!< false: #parentId is not looked at
    bool isDeep = false; //!< also below #parentId, at every depth
    bool noSelect = false; //!< ask for every field; beats the two selections below
    bool selectName = false; //!< ask for the name only; beats #selectTree
    bool selectTree = false; //!< ask for what a folder tree needs, at every depth
    bool reservedFlag = false; //!< carried for the caller; no query reads it
    int recordType = 0; //!< only documents with the user's record of this type; 0 or less: all
};

//! \brief How a list query is ordered.
struct VellDocumentSort
{
    QString sortField =
        QStringLiteral("updatedAt"); //!< the service's field, see the KEY_ constants
    bool isAsc = false; //!< ascending instead of descending
    //! Folders before files, then by their order, then latest change first, whatever the two fields above say.
    //! Read by VellDocumentData::getDocumentsRange() only.
    bool isDefault = true;
};

Q_DECLARE_METATYPE(VellDocumentConditon)
Q_DECLARE_METATYPE(VellDocumentSort)
