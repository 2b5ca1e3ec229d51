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

//! \brief Documents that are opened with programs of this computer, and what becomes of their changes.
//!
//! A document is fetched into a folder of its own, opened, and watched. The files and what they were made from are kept on the disk:
//! changes that were not stored when the program ended are found again when the same project is opened. Nothing on the service is
//! replaced that has been changed since: conflictFound() follows then.
class EditedFiles : public QObject
{
    Q_OBJECT

public:
    //! How a conflict is to end.
    enum class Way {
        NewVersion, //!< the local file becomes the newest version, on top of the other one
        KeepBoth, //!< the local file becomes a document of its own, under a free name
        DiscardMine, //!< the local file is fetched again; what was changed in it is lost
    };

    //! \param documents and \a queue must outlive this
    //! \param folder for the files
    EditedFiles(VellDocuments *documents, VellTransferQueue *queue, const QString &folder,
                QObject *parent = nullptr);

    //! Fetches \a document and opens it with the system's program. opened() or failed() follows.
    //!
    //! What is there already is opened as it is if it has changes that are not stored.
    void open(const VellDocument &document);

    //! The files with changes that are not stored.
    QStringList changedPaths() const;

    //! Makes the file \a path a new version of its document. stored(), conflictFound() or failed() follows.
    void store(const QString &path);

    //! Ends a conflict. stored(), opened() or failed() follows.
    //! \param current the document as it is on the service; without `_id` if it has been deleted, which leaves KeepBoth only
    void resolve(const QString &path, const VellDocument &current, Way way);

    VellFileWatch *watch() { return &m_watch; }

    //! Returns whether the transfer \a id was made here, so that its end is told by the signals of this class.
    bool isOwnTransfer(qint64 id) const { return m_ownTransfers.contains(id); }

Q_SIGNALS:
    void opened(const QString &path);

    //! The file \a path has been saved by its program.
    void changed(const QString &path);

    //! The changes of \a path are on the service.
    void stored(const QString &path, const VellDocument &document);

    //! Somebody else has changed or deleted the document meanwhile. \param current as for resolve()
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
    void takeStored(EditedFile sent, const VellDocument &document);
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
    QHash<qint64, Ended> m_waiting; // for the ends of transfers
};

} // namespace desktop
