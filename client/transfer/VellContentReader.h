#pragma once

#include <operations/VellError.h>
#include <vellclient_export.h>

#include <QByteArray>
#include <QObject>

#include <memory>

class VellSession;

//! \brief Reads a content as it arrives, for a preview, a pipe or a viewer of one's own. Keeps nothing on the disk.
//!
//! \code
//! auto *const reader = new VellContentReader(&session, document.fileId, document.fileSize, this);
//! connect(reader, &VellContentReader::received, this, [this](const QByteArray &data) { m_picture += data; });
//! connect(reader, &VellContentReader::finished, this, [this] { show(m_picture); });
//! connect(reader, &VellContentReader::failed, this, [this](const VellError &error) { showError(error.text); });
//! \endcode
//!
//! Starts from the event loop, with the connection that the session has when the reader is made. After a failure that can pass it
//! goes on where it was, until six attempts in a row have brought nothing. Ends with one of finished() and failed(); the destructor
//! ends it without a signal. Belongs to the thread of the session.
class VELLCLIENT_EXPORT VellContentReader : public QObject
{
    Q_OBJECT

public:
    //! \param session needed by the constructor only
    //! \param fileId `fileId` of a document or of one of its versions
    //! \param sizeBytes `fileSize`, with which what arrives is compared; -1 if it is not known
    VellContentReader(const VellSession *session, const QString &fileId, qint64 sizeBytes = -1,
                      QObject *parent = nullptr);
    ~VellContentReader() override;

Q_SIGNALS:
    //! The next part of the content, some KiB to 1 MiB. As long as the slots do not return nothing more is taken from the network.
    void received(const QByteArray &data);

    //! All of it has been received, and its MD5 is right.
    void finished();

    //! What has been received must not be used.
    void failed(const VellError &error);

private:
    class Private;
    const std::unique_ptr<Private> d;
};
