#pragma once

#include <document_model/VellDocument.h>

#include <QHash>
#include <QString>

namespace velldoc {

class Session;

//! \brief The paths of all folders of the project, asked for once: for lists of documents from anywhere.
class FolderPaths
{
public:
    //! \throws Failure
    explicit FolderPaths(Session &session);

    //! From the top level; "…/name" when a folder above is not to be seen.
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
