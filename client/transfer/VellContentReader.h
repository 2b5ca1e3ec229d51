#pragma once

#include <operations/VellError.h>
#include <vellclient_export.h>

#include <QByteArray>
#include <QObject>

#include <memory>

class VellSession;

//! \brief Reads a content while it arrives, for example for a preview or a pipe. Writes nothing to the disk.
//!
//! \code
//! auto *const reader = new VellContentReader(&session, document.fileId, document.fileSize, this);
//! connect(reader, &VellContentReader::received, this, [this](const QByteArray &data) { m_picture += data; });
//! connect(reader, &VellContentReader::finished, this, [this] { show(m_picture); });
//! connect(reader, &VellContentReader::failed, this, [this](const VellError &error) { showError(error.text); });
//! \endcode
//!
//! Reading starts from the event loop, with the connection that the session has when the reader is created. After a temporary
//! failure it continues where it stopped, until six attempts in a row have received nothing. It ends with either finished() or
//! failed(). The destructor aborts it, and nothing is emitted. Belongs to the thread of the session.
//!
//! \since 0.1
//! \sa VellTransferQueue::download()
class VELLCLIENT_EXPORT VellContentReader : public QObject
{
    Q_OBJECT

public:
    //! \param session used by the constructor only
    //! \param fileId `fileId` of a document or a version
    //! \param sizeBytes `fileSize`, for comparison with the received bytes; -1 if it is not known
    VellContentReader(const VellSession *session, const QString &fileId, qint64 sizeBytes = -1,
                      QObject *parent = nullptr);
    ~VellContentReader() override;

Q_SIGNALS:
    //! The next part of the content has arrived: a few KiB up to 1 MiB. Nothing more is read from the network until the slots
    //! return.
    void received(const QByteArray &data);

    //! The whole content has been received, and its MD5 is correct.
    void finished();

    //! Reading has failed. The data received so far must not be used.
    void failed(const VellError &error);

private:
    class Private;
    const std::unique_ptr<Private> d;
};
