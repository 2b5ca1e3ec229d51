#pragma once

#include <document_model/VellDocument.h>
#include <document_service/VellDocumentConditon.h>
#include <velldoc/documents/RemotePath.h>
#include <velldoc/program/Failure.h>

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

//! Returns why \a path, which is a file, cannot be used.
Failure notAFolder(const RemotePath &path);

//! \brief Finds documents by path, and requests nothing twice.
//!
//! All functions throw Failure: with ExitNotFound if a document does not exist, or with the error of a request.
class RemoteTree
{
public:
    explicit RemoteTree(Session &session);

    //! Returns the document or folder at \a path. The top level is a folder with an empty `_id`.
    VellDocument find(const RemotePath &path);

    //! Like find(), but returns no value if only the last name of \a path does not exist.
    std::optional<VellDocument> tryFind(const RemotePath &path);

    VellDocument findFolder(const RemotePath &path);

    //! Returns the entries of the folder \a id, folders first.
    QList<VellDocument> entries(const QString &id);

    //! Returns the entries by name, requested once for each folder. If several entries have the same name, the first one is used.
    QHash<QString, VellDocument> &namesIn(const QString &folderId);

    //! Creates the folder \a name in the folder \a parentId.
    //! \param isPretended if true, no request is sent, but the other functions find the folder
    VellDocument makeFolder(const QString &parentId, const QString &name, bool isPretended = false);

    //! Returns the folder at \a path, which is created with its missing parent folders.
    VellDocument makePath(const RemotePath &path);

    //! Returns the path of the document \a id from the top level.
    QString pathOf(const VellDocument &document);

    //! Returns all documents that match \a condition, in the order of \a sort.
    QList<VellDocument> list(const VellDocumentConditon &condition,
                             const VellDocumentSort &sort = VellDocumentSort());

private:
    VellDocument start(const RemotePath &path);
    std::optional<VellDocument> step(const VellDocument &folder, const QString &name,
                                     const RemotePath &path);
    VellDocument byId(const QString &id);
    QStringList someNamesIn(const QString &folderId);
    //! Returns that there is no entry at \a path, with an entry of the same folder that may be meant.
    Failure notFound(const RemotePath &path);

    Session &m_session;
    QHash<QString, QHash<QString, VellDocument>> m_names;
    QHash<QString, VellDocument> m_known;
};

} // namespace velldoc
