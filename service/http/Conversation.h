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

//! What must happen before a conversation can go on.
struct Wait
{
    enum class For {
        Bytes, //!< the socket has something to read
        Room, //!< the socket takes something
        Time, //!< `patience` is over
        Turn, //!< others have had their turn
        Nothing, //!< the conversation has ended
    };

    For what = For::Nothing;
    std::chrono::milliseconds patience{0}; //!< how long bytes or room may take to come
};

//! \brief The requests and responses on one connection, as far as they get without waiting.
//!
//! Used by one thread at a time. Neither owns nor closes the socket, which does not block.
class Conversation
{
public:
    Conversation(int socket, const QString &client, ServerContext &context);

    //! Goes on. \param waited how long the wait took that was asked for
    Wait advance(std::chrono::milliseconds waited);

    //! Goes on after a wait whose patience is over.
    Wait timedOut();

    //! Whether it waits for a request of which no byte has come.
    bool isIdle() const { return m_phase == Phase::Head && m_in.isEmpty(); }
    //! Whether a response is being made or sent.
    bool isResponding() const { return m_phase != Phase::Head && m_phase != Phase::Body; }

private:
    using Milliseconds = std::chrono::milliseconds;
    using Step = std::optional<Wait>; //!< nothing: go on with the phase that is set now

    enum class Phase {
        Head, //!< reading the head of a request
        Begin, //!< what needs no body
        Body, //!< reading the body
        Finish, //!< what needs the body
        Delay, //!< misbehaving
        Send, //!< sending the response
        Drain, //!< reading what is left of a body, so that the next request can be read
        Linger, //!< the same before the end of the connection
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
    //! Responds to what is no request; the connection ends.
    void refuse(const HttpError &error);
    void log(int status, qint64 bytes);
    Step lose();
    void startNext();
    //! Reads and forgets what is left of the body.
    enum class Discarded { All, Blocked, Ended };
    Discarded discard(qint64 *left);

    bool isReadySoon(short events) const;
    void openWindow(Milliseconds patience);
    Wait blocked(Wait::For what);

    const int m_socket;
    const QString m_client;
    ServerContext &m_context;

    Phase m_phase = Phase::Head;
    QByteArray m_in; //!< read, but not used yet: at most a head and what came with it
    Milliseconds m_patience{0}; //!< what is left of the current window
    qint64 m_moved = 0; //!< in the current window

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
