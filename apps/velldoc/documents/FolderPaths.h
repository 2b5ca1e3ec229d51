#pragma once

#include <document_model/VellDocument.h>

#include <QHash>
#include <QString>

namespace velldoc {

class Session;

//! \brief The paths of all folders of the project, requested once, for lists of documents of many folders.
class FolderPaths
{
public:
    //! \throws Failure
    explicit FolderPaths(Session &session);

    //! Returns the path from the top level; "…/name" if a folder above is not visible.
    QString pathOf(const VellDocument &document) const;

private:
    struct Folder
    {
        QString name;
        QString parentId;
    };

    QHash<QString, Folder> m_folders;
};

} // namespace velldoc
