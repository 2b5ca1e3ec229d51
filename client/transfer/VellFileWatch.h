#pragma once

#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

class VellTransferQueue;

//! \brief Watches local files that a user edits, so that their changes can become new versions.
//!
//! A change is reported once the file has been left alone for the settle time. Programs that save by writing another file and
//! renaming it are followed. Belongs to the thread that made it, and reads the disk on another one.
class VELLCLIENT_EXPORT VellFileWatch : public QObject
{
    Q_OBJECT

public:
    explicit VellFileWatch(QObject *parent = nullptr);
    ~VellFileWatch() override;

    //! How long a file must stay as it is before its change is reported; 1 s unless set.
    void setSettleTime(std::chrono::milliseconds time);

    //! Watches the file at \a path from its state of now on. \a document is what it was downloaded from: see queueVersion().
    void add(const QString &path, const VellDocument &document = {});
    void remove(const QString &path);

    //! The document that was given with \a path, or the latest version that was made of it.
    VellDocument document(const QString &path) const;

    //! Uploads the file at \a path as a new version of its document, unless that has been changed on the service
    //! since: the transfer fails with VellError::Kind::ChangedMeanwhile then. The version it makes is the base of the next.
    //! \return the transfer; 0 if the file is not watched or has no document
    qint64 queueVersion(const QString &path, VellTransferQueue *queue);

Q_SIGNALS:
    //! The content of the file \a path has been changed.
    void changed(const QString &path);

    //! The file is not there any more, and has not come back within the settle time.
    void vanished(const QString &path);

private:
    class Private;
    std::unique_ptr<Private> d;
};
