#pragma once

#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

class VellTransferQueue;

//! \brief Watches local files that a user edits, so that their changes can be uploaded as new versions.
//!
//! A change is reported when the file has not changed again for the settle time. Programs may save by writing another file
//! and renaming it. Belongs to the thread that created it; the disk is read by another thread.
//!
//! \since 0.1
//! \sa VellTransferQueue::uploadVersion()
class VELLCLIENT_EXPORT VellFileWatch : public QObject
{
    Q_OBJECT

public:
    explicit VellFileWatch(QObject *parent = nullptr);
    ~VellFileWatch() override;

    //! Sets how long a file must remain unchanged before a change is reported. The default is 1 s.
    void setSettleTime(std::chrono::milliseconds time);

    //! Starts to watch the file at \a path; changes are reported relative to its present state. \a document is the document that
    //! the file was downloaded from, for queueVersion().
    void add(const QString &path, const VellDocument &document = {});

    //! Stops watching the file at \a path.
    void remove(const QString &path);

    //! Returns the document of add(), or the latest version that was created from the file.
    VellDocument document(const QString &path) const;

    //! Adds an upload of the file at \a path to \a queue, as a new version of its document. If the document has been changed on the
    //! service since, the transfer fails with VellError::Kind::ChangedMeanwhile. The next version is based on the one that is
    //! created.
    //! \return the identifier of the transfer; 0 if the file is not watched or has no document
    //! \sa VellTransferQueue::uploadVersion()
    qint64 queueVersion(const QString &path, VellTransferQueue *queue);

Q_SIGNALS:
    //! The content of the file at \a path has changed.
    void changed(const QString &path);

    //! The file at \a path has been removed, and has not been created again within the settle time.
    void vanished(const QString &path);

private:
    class Private;
    std::unique_ptr<Private> d;
};
