#pragma once

#include <service/http/RequestHandler.h>
#include <service/http/RequestHead.h>
#include <service/http/ResponseSender.h>

#include <QElapsedTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace service {

struct ServerContext;

//! What a conversation waits for.
struct Wait
{
    enum class For {
        Bytes, //!< data to read
        Room, //!< room in the socket's send buffer
        Time, //!< the end of `patience`
        Turn, //!< the next turn on a worker, after other connections
        Nothing, //!< the conversation has ended
    };

    For what = For::Nothing;
    std::chrono::milliseconds patience{0}; //!< the longest time to wait for bytes or room
};

//! \brief Processes the requests and responses of one connection until it would have to wait.
//!
//! Used by one thread at a time. Does not own the socket, which is non-blocking.
class Conversation
{
public:
    Conversation(int socket, const QString &client, ServerContext &context);

    //! Continues after a wait. \param waited how long it took
    Wait advance(std::chrono::milliseconds waited);

    //! Continues after a wait whose patience has expired.
    Wait timedOut();

    //! Returns true if it waits for a request of which no byte has arrived.
    bool isIdle() const { return m_phase == Phase::Head && m_in.isEmpty(); }
    //! Returns true if a request is being processed or its response is being sent.
    bool isResponding() const { return m_phase != Phase::Head && m_phase != Phase::Body; }

private:
    using Milliseconds = std::chrono::milliseconds;
    using Step = std::optional<Wait>; //!< nothing: continue with the present phase

    enum class Phase {
        Head, //!< reading the head of a request
        Begin, //!< processing that needs no body
        Body, //!< reading the body
        Finish, //!< processing that needs the body
        Delay, //!< waiting because of a fault
        Send, //!< sending the response
        Drain, //!< reading the rest of a body, so that the next request can be read
        Linger, //!< reading the rest of a body before the connection is closed
    };

    Step step();
    Step readHead();
    void acceptHead(qsizetype length);
    Step begin();
    bool sendContinue() const;
    Step readBody();
    Step takeBody(const char *data, qint64 length);
    Step finish();
    Step delay();
    Step send();
    Step drain();
    Step linger();

    void respond(HttpResponse response);
    //! Responds to an invalid request and ends the connection.
    void refuse(const HttpError &error);
    void log(int status, qint64 bytes);
    Step lose();
    void startNext();
    //! Reads and discards the rest of the body.
    enum class Discarded { All, Blocked, Ended };
    Discarded discard(qint64 *left);

    bool isReadySoon(short events) const;
    void openWindow(Milliseconds patience);
    Wait blocked(Wait::For what);

    const int m_socket;
    const QString m_client;
    ServerContext &m_context;

    Phase m_phase = Phase::Head;
    QByteArray
        m_in; //!< read, but not processed yet: at most a head and the data that was read with it
    Milliseconds m_patience{0}; //!< the rest of the current period
    qint64 m_moved = 0; //!< bytes in the current period

    RequestHead m_head;
    std::unique_ptr<RequestHandler> m_handler;
    Misbehaviour m_fault;
    qint64 m_bodyLeft = 0;
    QByteArray m_recordedBody;
    QElapsedTimer m_clock;
    ResponseSender m_sender;
    bool m_hasSkippedLine = false;
    bool m_closes = false;
};

} // namespace service
