#pragma once

#include "ConnectionOptions.h"

#include <QByteArray>
#include <QEvent>
#include <QList>
#include <QObject>
#include <QPair>
#include <QUrl>

#include <atomic>
#include <deque>
#include <mutex>
#include <optional>

//! \brief What the thread that starts a request does next.
enum class Caller {
    GoesOn,
    Waits //!< it will wait in a NetworkEventLoop, see TransferEngine::drive()
};

//! \brief The data of a request; constant after its start.
struct TransferRequest
{
    QByteArray method;
    QUrl url;
    QList<QByteArray> headers; //!< lines without line ends
    std::optional<QByteArray> body; //!< sent without copying; not set if there is no body
    qint64 streamedBytes =
        -1; //!< size of a body that is passed to Transfer::supply(); -1 if there is none
    ConnectionOptions connection;
    Caller caller = Caller::GoesOn;

    //! Returns true if it is so small that its caller can send it without delaying events.
    bool isSmallAndAwaited() const;

    bool hasBody() const { return body || streamedBytes >= 0; }

    //! Returns true if the service may do something else if it receives the request twice.
    bool isChange() const { return method != "GET" && method != "HEAD"; }
};

//! \brief Status line and header fields of a response.
struct ResponseHead
{
    int status = 0;
    QByteArray reason;
    QList<QPair<QByteArray, QByteArray>> fields;
};

//! \brief How a transfer ended below HTTP.
struct TransferEnd
{
    int curlCode = 0; //!< CURLE_OK if a complete response has arrived, whatever its status
    QByteArray detail; //!< the message of libcurl
    int systemError = 0; //!< errno or the Windows socket error of a failed connection
    long verifyResult = 0; //!< OpenSSL's code for the server's certificate; 0 elsewhere
    int proxyStatus = 0; //!< status of the proxy's response to CONNECT; 0 if there was none
    bool isOverProxy = false;
    bool isEncrypted = false;
};

//! \brief A request and its response so far, shared by the thread of the caller and the thread that runs it.
//!
//! The latter collects news and posts one event of newsType() to the receiver, which then calls take(). Thread-safe.
class Transfer
{
public:
    //! What has happened since the last take().
    struct News
    {
        qint64 sentBytes = 0; //!< of the body, so far
        std::optional<ResponseHead> head;
        QByteArray data;
        bool hasMoreData = false; //!< there is more data than was requested
        int wantedBlocks = 0; //!< how many blocks of a streamed body can be supplied now
        std::optional<TransferEnd> end; //!< set at last, when all data has been taken
    };

    //! How much data is buffered for the receiver before the connection is paused.
    static constexpr qint64 InboxBytes = qint64(4) * 1048576;
    //! How many blocks of a streamed body are buffered for the connection.
    static constexpr int OutboxBlocks = 3;

    static QEvent::Type newsType();

    Transfer(TransferRequest request, QObject *receiver);

    const TransferRequest &request() const { return m_request; }

    //! \name For the caller's thread
    //! \{

    //! No event is posted once the end has been taken.
    //! \param maxDataBytes the maximum of data to take; while more is left, the connection is paused
    News take(qint64 maxDataBytes);

    //! Adds the next block of a streamed body.
    void supply(const QByteArray &block);

    //! No event is posted from now on.
    void detach();

    //! Returns a number that changes whenever anything is sent or received; 0 while the request waits for a connection.
    quint64 activity() const { return m_activity.load(std::memory_order_relaxed); }
    //! \}

    //! \name For the thread that runs the transfer
    //! \{
    void noteActivity() { m_activity.fetch_add(1, std::memory_order_relaxed); }
    void setSentBytes(qint64 bytes);
    void setHead(const ResponseHead &head);
    //! \return false if nothing was added because the receiver does not keep up; take() then resumes the transfer
    bool addData(const char *data, qint64 size);
    //! Takes up to \a maxSize bytes of a streamed body. \return 0 if there is none; supply() then resumes the transfer
    qint64 takeBody(char *data, qint64 maxSize);
    //! To be called last. Releases the body, so that a caller which sends several in turn has only one in memory.
    void setEnd(const TransferEnd &end);
    //! Posts the event if there is news.
    void announce();
    //! \}

private:
    QByteArray takeData(qint64 maxBytes);

    TransferRequest m_request;
    std::atomic<quint64> m_activity{0};
    std::atomic<bool> m_hasNews{false};

    std::mutex m_mutex;
    QObject *m_receiver;
    bool m_isEventPosted = false;
    News m_news;
    qint64 m_dataOffset = 0; // of the data that has been taken
    bool m_isHeldBack = false; // paused until take()
    bool m_isStarved = false; // paused until supply()
    std::deque<QByteArray> m_outbox;
    qint64 m_outboxOffset = 0; // of the first block
    qint64 m_suppliedBytes = 0;
};
