#pragma once

#include <desktop/editing/EditedFile.h>

#include <transfer/VellFileWatch.h>
#include <transfer/VellTransfer.h>

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>

class VellDocuments;
class VellTransferQueue;

namespace desktop {

//! \brief Documents that are opened with other programs, and their changes.
//!
//! Each document is downloaded into its own folder, opened and watched. The files and their documents are stored on the disk:
//! changes that were not uploaded when the program ended are found when the same project is opened again. A document that has been
//! changed on the service since is not replaced: conflictFound() is emitted.
class EditedFiles : public QObject
{
    Q_OBJECT

public:
    //! How a conflict is resolved.
    enum class Way {
        NewVersion, //!< the local file becomes the newest version, after the other one
        KeepBoth, //!< the local file becomes a new document, with a free name
        DiscardMine, //!< the document is downloaded again; the local changes are lost
    };

    //! \param documents and \a queue must outlive this object
    //! \param folder for the files
    EditedFiles(VellDocuments *documents, VellTransferQueue *queue, const QString &folder,
                QObject *parent = nullptr);

    //! Downloads \a document and opens it in its default program. opened() or failed() follows.
    //!
    //! If there is a local file with changes that have not been uploaded, that file is opened.
    void open(const VellDocument &document);

    //! Returns the files with changes that have not been uploaded.
    QStringList changedPaths() const;

    //! Uploads the file \a path as a new version of its document. stored(), conflictFound() or failed() follows.
    void store(const QString &path);

    //! Resolves a conflict. stored(), opened() or failed() follows.
    //! \param current the document on the service; without `_id` if it has been deleted: then only KeepBoth is possible
    void resolve(const QString &path, const VellDocument &current, Way way);

    VellFileWatch *watch() { return &m_watch; }

    //! Returns true if the transfer \a id belongs to this object, which reports its end by its own signals.
    bool isOwnTransfer(qint64 id) const { return m_ownTransfers.contains(id); }

Q_SIGNALS:
    void opened(const QString &path);

    //! The file \a path has been saved by another program.
    void changed(const QString &path);

    //! The changes of \a path have been uploaded.
    void stored(const QString &path, const VellDocument &document);

    //! Another user has changed or deleted the document meanwhile. \param current as for resolve()
    void conflictFound(const QString &path, const VellDocument &current);

    //! \param text a sentence for the user
    void failed(const QString &text, const VellError &error);

private:
    using Ended = std::function<void(const VellTransfer &transfer, const VellDocument &document)>;

    QString listPath() const;
    QString folderOf(const QString &id) const;
    EditedFile *find(const QString &path);
    EditedFile *findDocument(const QString &id);
    void fetch(const VellDocument &document);
    void show(const QString &path);
    void follow(const EditedFile &file);
    void whenEnded(qint64 transfer, const Ended &then);
    EditedFile asSent(const QString &path);
    void onStored(EditedFile sent, const VellDocument &document);
    void lookForConflict(const QString &path);
    void load();
    void save();

    VellDocuments *const m_documents;
    VellTransferQueue *const m_queue;
    const QString m_folder;
    VellFileWatch m_watch;
    QList<EditedFile> m_files;
    QSet<QString> m_changed;
    QSet<qint64> m_ownTransfers;
    QHash<qint64, Ended> m_waiting; // waiting for the ends of transfers
};

} // namespace desktop
