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

//! \brief What the thread does that has started a request.
enum class Caller {
    GoesOn,
    Waits //!< it is about to wait in a NetworkEventLoop, see TransferEngine::drive()
};

//! \brief What one request sends; fixed when it starts.
struct TransferRequest
{
    QByteArray method;
    QUrl url;
    QList<QByteArray> headers; //!< lines without their end
    std::optional<QByteArray> body; //!< sent from where it is; not set for a request without a body
    qint64 streamedBytes =
        -1; //!< size of a body that comes by Transfer::supply(); -1 when none does
    ConnectionOptions connection;
    Caller caller = Caller::GoesOn;

    //! Its caller can send it without being kept from its events.
    bool isSmallAndAwaited() const;

    bool hasBody() const { return body || streamedBytes >= 0; }

    //! The service may do something else when it receives the request twice.
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
    int curlCode = 0; //!< CURLE_OK when a whole response has arrived, whatever its status
    QByteArray detail; //!< libcurl's own words
    int systemError = 0; //!< errno or the Windows socket error of a failed connection
    long verifyResult = 0; //!< OpenSSL's code for the server's certificate; 0 elsewhere
    int proxyStatus = 0; //!< what the proxy answered to CONNECT; 0 when it was not asked
    bool isOverProxy = false;
    bool isEncrypted = false;
};

//! \brief One request and what has come back of it so far, shared by the caller's thread and the one that runs it.
//!
//! The latter collects what is new and then posts one event of newsType() to the receiver, which take() answers.
//! Thread-safe.
class Transfer
{
public:
    //! What has happened since the last take().
    struct News
    {
        qint64 sentBytes = 0; //!< of the body, so far
        std::optional<ResponseHead> head;
        QByteArray data;
        bool hasMoreData = false; //!< data was left because it was not wanted
        int wantedBlocks = 0; //!< how many blocks of a streamed body can be supplied now
        std::optional<TransferEnd>
            end; //!< comes last, with all data taken before or together with it
    };

    //! What may wait here for the receiver before the connection is held back.
    static constexpr qint64 InboxBytes = qint64(4) * 1048576;
    //! How many blocks of a streamed body may wait here for the connection.
    static constexpr int OutboxBlocks = 3;

    static QEvent::Type newsType();

    Transfer(TransferRequest request, QObject *receiver);

    const TransferRequest &request() const { return m_request; }

    //! \name For the caller's thread
    //! \{

    //! No event is posted once the end has been taken.
    //! \param maxDataBytes how much data is wanted; what is left stays here and holds the connection back
    News take(qint64 maxDataBytes);

    //! Adds the next block of a streamed body.
    void supply(const QByteArray &block);

    //! No event is posted from now on.
    void detach();

    //! Changes whenever anything is sent or received; 0 while the request waits for a connection.
    quint64 activity() const { return m_activity.load(std::memory_order_relaxed); }
    //! \}

    //! \name For the thread that runs the transfer
    //! \{
    void noteActivity() { m_activity.fetch_add(1, std::memory_order_relaxed); }
    void setSentBytes(qint64 bytes);
    void setHead(const ResponseHead &head);
    //! \return false when nothing was taken because the receiver does not keep up; take() then resumes it
    bool addData(const char *data, qint64 size);
    //! Takes up to \a maxSize bytes of a streamed body. \return 0 when none is there; supply() then resumes it
    qint64 takeBody(char *data, qint64 maxSize);
    //! Comes last. Lets go of the body, so that a caller which sends one after another has no more than one in memory.
    void setEnd(const TransferEnd &end);
    //! Posts the event if there is something new.
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
    qint64 m_dataOffset = 0; // of what has been taken of its data
    bool m_isHeldBack = false; // the connection waits for take()
    bool m_isStarved = false; // the connection waits for supply()
    std::deque<QByteArray> m_outbox;
    qint64 m_outboxOffset = 0; // of the first block
    qint64 m_suppliedBytes = 0;
};
