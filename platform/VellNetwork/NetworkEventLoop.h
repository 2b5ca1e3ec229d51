#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QByteArray>
#include <QEventLoop>
#include <QJsonObject>
#include <QList>
#include <QNetworkReply>
#include <QPointer>

//! \brief Waits for one reply, processes the events of the thread meanwhile, and reads the response.
//!
//! \code
//! NetworkEventLoop loop(NetworkManager::instance()->get(url));
//! loop.exec();
//! if (loop.isSuccessful())
//!     read(loop.object());
//! \endcode
//!
//! Takes ownership of the reply; the destructor aborts it if it is still running. A null reply, or one that was deleted elsewhere,
//! counts as finished without success. Belongs to the thread of the reply.
//!
//! \since 0.1
//! \sa NetworkManager
class VELLNETWORK_EXPORT NetworkEventLoop : public QEventLoop
{
    Q_OBJECT

public:
    explicit NetworkEventLoop(QNetworkReply *reply, QObject *parent = nullptr);
    ~NetworkEventLoop() override;

    //! Returns when the reply has finished, or before that after exit() or when the application quits. Returns at once if the
    //! reply has already finished.
    //!
    //! Events are possibly not processed for the first 2 ms, or until the response arrives if that is sooner.
    //! \return 0, or the code that was passed to exit().
    int exec(ProcessEventsFlags flags = AllEvents);

    bool isFinished() const;

    //! Returns true if the reply has finished without a network error and with a 2xx status.
    bool isSuccessful() const;

    //! Returns the network error of the finished reply, see NetworkManager; NoError before it has finished.
    QNetworkReply::NetworkError error() const;

    //! Returns the HTTP status; 0 if there is none.
    int httpStatus() const;

    //! Returns the body of the response, whatever its status; empty before the reply has finished.
    QByteArray content() const;

    //! Returns the body as a JSON object; empty if it is anything else or missing.
    //! \sa objectList()
    QJsonObject object() const;

    //! Returns the objects of the body, a JSON array, in order; other elements are ignored. Empty if the body is anything else or
    //! missing.
    //! \sa object()
    QList<QJsonObject> objectList() const;

Q_SIGNALS:
    //! The number of bytes of the request's body that have been sent, and the total.
    void uploadProgress(qint64 bytesSent, qint64 bytesTotal);

    //! The reply has ended with the network error \a code, see error(). Emitted once, before exec() returns.
    void errorEmit(int code);

private:
    void finish();

    enum class Wait {
        None, // exec() is not running, and has not returned after the end of the reply
        Running, // inside exec()
        Ended, // the reply has ended inside exec(), which has not returned yet
        Returned, // exec() has returned: no signal of the reply is on the stack any more
    };

    QPointer<QNetworkReply> m_reply;
    Wait m_wait = Wait::None;
    bool m_reported = false;
    mutable QByteArray m_content;
};
