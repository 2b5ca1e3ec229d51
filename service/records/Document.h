#pragma once

#include <QString>

namespace service {

//! \brief A row of the table of documents, with data of the current user.
struct Document
{
    enum Recycle {
        Present = 0,
        Deleted = 1, //!< moved to the recycle bin itself
        BelowDeleted = 2, //!< moved to it together with a folder above
    };

    QString id;
    QString projectId;
    QString parentId; //!< empty at the top level
    QString type; //!< "dir" or "file"
    QString name;
    QString category;
    QString hostId;
    int hostType = 0;
    int order = 0;
    QString remark;
    QString status;
    QString pwd;
    QString previewId;
    QString fileId;
    QString suffix;
    qint64 size = 0;
    int recycle = Present;
    qint64 createdAt = 0;
    QString createdBy;
    qint64 updatedAt = 0;
    QString updatedBy;

    QString links; //!< JSON: [[kind, id], …], kinds and ids in order
    bool isFavorite = false; //!< for the current user
    qint64 downloadedAt = 0; //!< by the current user

    bool isFolder() const { return type == QLatin1String("dir"); }
};

} // namespace service
