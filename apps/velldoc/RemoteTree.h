#pragma once

#include <document_model/VellDocument.h>
#include <document_service/VellDocumentConditon.h>
#include <velldoc/Failure.h>
#include <velldoc/RemotePath.h>

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace velldoc {

class Session;

inline bool isFolder(const VellDocument &document)
{
    return document.type == QLatin1String("dir");
}

//! Why \a path, which is a file, will not do.
Failure notAFolder(const RemotePath &path);

//! \brief Finds documents by path through the library, and asks for nothing twice.
//!
//! All functions throw Failure: ExitNotFound for what is not there, or why a request failed.
class RemoteTree
{
public:
    explicit RemoteTree(Session &session);

    //! The document or folder at \a path. The top level is a folder with an empty `_id`.
    VellDocument find(const RemotePath &path);

    //! The same; nothing when only the last name of \a path is missing.
    std::optional<VellDocument> tryFind(const RemotePath &path);

    VellDocument findFolder(const RemotePath &path);

    //! The entries of the folder \a id, folders first.
    QList<VellDocument> entries(const QString &id);

    //! The same by name, asked for once for each folder. Of several entries with one name the first counts.
    QHash<QString, VellDocument> &namesIn(const QString &folderId);

    //! Makes the folder \a name in the folder \a parentId.
    //! \param isPretended the service is told nothing; other functions know the folder
    VellDocument makeFolder(const QString &parentId, const QString &name, bool isPretended = false);

    //! The folder at \a path, made with all that is missing above it.
    VellDocument makePath(const RemotePath &path);

    //! Where the document \a id stands, from the top level.
    QString pathOf(const VellDocument &document);

    //! Every page of what meets \a condition, in the order of \a sort.
    QList<VellDocument> list(const VellDocumentConditon &condition,
                             const VellDocumentSort &sort = VellDocumentSort());

private:
    VellDocument start(const RemotePath &path);
    std::optional<VellDocument> step(const VellDocument &folder, const QString &name,
                                     const RemotePath &path);
    VellDocument byId(const QString &id);

    Session &m_session;
    QHash<QString, QHash<QString, VellDocument>> m_names;
    QHash<QString, VellDocument> m_known;
};

} // namespace velldoc
