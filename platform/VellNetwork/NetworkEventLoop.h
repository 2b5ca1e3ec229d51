#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QByteArray>
#include <QEventLoop>
#include <QJsonObject>
#include <QList>
#include <QNetworkReply>
#include <QPointer>

//! \brief Waits for one reply while the thread's events run, and reads it.
//!
//! \code
//! NetworkEventLoop loop(NetworkManager::instance()->get(url));
//! loop.exec();
//! if (loop.isSuccessful())
//!     read(loop.object());
//! \endcode
//!
//! Takes ownership of the reply and deletes it with itself; a reply that is still running is aborted.
//! A null reply, or one that somebody else has deleted, counts as finished without success. Lives on
//! the thread of the reply.
class VELLNETWORK_EXPORT NetworkEventLoop : public QEventLoop
{
    Q_OBJECT

public:
    explicit NetworkEventLoop(QNetworkReply *reply, QObject *parent = nullptr);
    ~NetworkEventLoop() override;

    //! Events may be left waiting for the first 2 ms, or until the response comes if that is sooner.
    //!
    //! Returns when the reply has finished, with success or not: at once when it already has, and
    //! after exit() or when the application quits also before.
    //! \return 0, or the code given to exit().
    int exec(ProcessEventsFlags flags = AllEvents);

    bool isFinished() const;

    //! Whether the reply has finished without a network error and with a 2xx status.
    bool isSuccessful() const;

    //! The network error of the finished reply, as NetworkManager describes them; NoError before.
    QNetworkReply::NetworkError error() const;

    //! The HTTP status, 0 while there is none.
    int httpStatus() const;

    //! The body of the finished reply, whatever its status; empty before.
    QByteArray content() const;

    //! The body as a JSON object; empty when it is anything else or not there.
    QJsonObject object() const;

    //! The objects of the body's JSON array, in order; elements of another kind are skipped. Empty
    //! when the body is anything else or not there.
    QList<QJsonObject> objectList() const;

Q_SIGNALS:
    //! Relayed from the reply, bytes of the request's body.
    void uploadProgress(qint64 bytesSent, qint64 bytesTotal);

    //! The reply ended with the network error \a code, see error(); emitted once, before exec() returns.
    void errorEmit(int code);

private:
    void finish();

    enum class Wait {
        None, // exec() has not been left after the end of the reply
        Running, // inside exec()
        Ended, // the reply ended inside exec(), which has not returned yet
        Returned, // and now it has: no signal of the reply is on the stack any more
    };

    QPointer<QNetworkReply> m_reply;
    Wait m_wait = Wait::None;
    bool m_reported = false;
    mutable QByteArray m_content;
};
