#include <service/http/Conversation.h>

#include <service/http/ResponseHead.h>
#include <service/http/ServerContext.h>

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <utility>
#include <vector>

namespace service {

namespace {

using namespace std::chrono_literals;

constexpr int HeadBlock = 16 * 1024;
constexpr size_t BodyBlock = size_t(256) * 1024;
constexpr qint64 BytesPerTurn = Q_INT64_C(4) * 1024 * 1024;
//! How much of the body of a refused request is read and discarded, so that the connection can be used again.
constexpr qint64 DrainBytes = Q_INT64_C(1024) * 1024;
//! The same before the connection is closed: closing it at once would discard the response for a client that is still sending.
constexpr qint64 LingerBytes = Q_INT64_C(256) * 1024 * 1024;
constexpr std::chrono::milliseconds LingerPatience = 2s;
constexpr std::chrono::milliseconds DelayStep = 20ms;
//! How long a free thread waits for a client itself: passing the connection to the waiting thread takes longer than many clients need.
constexpr std::chrono::milliseconds ShortWait = 1ms;

constexpr qint64 Blocked = -1;

//! \return the number of bytes received, 0 if the connection has ended, or Blocked
qint64 receive(int socket, char *data, size_t size)
{
    const ssize_t count = ::recv(socket, data, size, MSG_DONTWAIT);
    if (count >= 0)
        return count;
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR ? Blocked : 0;
}

bool isReadyWithin(int socket, short events, std::chrono::milliseconds time)
{
    pollfd entry{socket, events, 0};
    return ::poll(&entry, 1, static_cast<int>(time.count())) > 0;
}

//! One buffer for each thread, so that connections need none.
std::vector<char> &bodyBlock()
{
    thread_local std::vector<char> block(BodyBlock);
    return block;
}

} // namespace

Conversation::Conversation(int socket, const QString &client, ServerContext &context)
    : m_socket(socket), m_client(client), m_context(context), m_sender(context)
{
    openWindow(context.settings.limits.idle);
}

Wait Conversation::advance(Milliseconds waited)
{
    m_patience -= waited;
    for (;;) {
        if (const Step wait = step())
            return *wait;
    }
}

Wait Conversation::timedOut()
{
    if (isIdle() || isResponding())
        return {};
    refuse(HttpError(408, QStringLiteral("The request came too slowly.")));
    return advance(0ms);
}

Conversation::Step Conversation::step()
{
    switch (m_phase) {
    case Phase::Head:
        return readHead();
    case Phase::Begin:
        return begin();
    case Phase::Body:
        return readBody();
    case Phase::Finish:
        return finish();
    case Phase::Delay:
        return delay();
    case Phase::Send:
        return send();
    case Phase::Drain:
        return drain();
    case Phase::Linger:
        return linger();
    }
    return Wait{};
}

Conversation::Step Conversation::readHead()
{
    for (;;) {
        if (!m_hasSkippedLine
            && m_in.startsWith("\r\n")) { // some clients send one too many after a body
            m_in.remove(0, 2);
            m_hasSkippedLine = true;
        }
        const int end = m_in.indexOf("\r\n\r\n");
        const int length = end < 0 ? m_in.size() : end + 4;
        if (length > HeadLimits::Bytes) {
            refuse(headTooLong({m_in.constData(), static_cast<size_t>(m_in.size())}));
            return std::nullopt;
        }
        if (end >= 0) {
            acceptHead(length);
            return std::nullopt;
        }
        std::array<char, HeadBlock> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
        const qint64 count = receive(m_socket, block.data(), block.size());
        if (count == Blocked)
            return Wait{Wait::For::Bytes, std::max(m_patience, 1ms)};
        if (count == 0)
            return Wait{};
        if (m_in.isEmpty()) {
            openWindow(m_context.settings.limits.head);
            m_clock.start();
        }
        m_in.append(block.data(), static_cast<int>(count));
    }
}

void Conversation::acceptHead(qsizetype length)
{
    try {
        m_head = parseRequestHead({m_in.constData(), static_cast<size_t>(length)},
                                  m_context.settings.limits.maxBodyBytes);
    } catch (const HttpError &error) {
        refuse(error);
        return;
    }
    m_in.remove(0, static_cast<int>(length));
    m_head.request.client = m_client;
    m_context.settings.proxies.apply(m_head.request);
    m_bodyLeft = m_head.request.bodyLength;
    m_phase = Phase::Begin;
}

Conversation::Step Conversation::begin()
{
    m_handler = m_context.settings.handler(m_head.request);
    try {
        if (auto response = m_handler->begin()) {
            respond(std::move(*response));
            return std::nullopt;
        }
    } catch (...) {
        respond(m_handler->failure(std::current_exception()));
        return std::nullopt;
    }
    if (m_handler->misbehaviour().dropAfterBytes == 0)
        return lose();
    if (m_head.expectsContinue && m_in.isEmpty() && !sendContinue())
        return lose();
    m_head.expectsContinue = false;
    openWindow(m_context.settings.limits.progress);
    m_phase = m_bodyLeft > 0 ? Phase::Body : Phase::Finish;
    return std::nullopt;
}

bool Conversation::sendContinue() const
{
    const QByteArray line = QByteArrayLiteral("HTTP/1.1 100 Continue\r\n\r\n");
    return ::send(m_socket, line.constData(), static_cast<size_t>(line.size()),
                  MSG_NOSIGNAL | MSG_DONTWAIT)
        == line.size();
}

Conversation::Step Conversation::readBody()
{
    qint64 turn = BytesPerTurn;
    while (m_phase == Phase::Body && turn > 0) {
        const QByteArray early =
            m_in.left(static_cast<int>(std::min<qint64>(m_in.size(), m_bodyLeft)));
        qint64 count = early.size();
        m_in.remove(0, early.size());
        const char *data = early.constData();
        if (count == 0) {
            std::vector<char> &block = bodyBlock();
            const qint64 wanted = std::min<qint64>(m_bodyLeft, static_cast<qint64>(block.size()));
            count = receive(m_socket, block.data(), static_cast<size_t>(wanted));
            if (count == Blocked && isReadySoon(POLLIN))
                continue;
            if (count == Blocked)
                return blocked(Wait::For::Bytes);
            if (count == 0)
                return lose();
            data = block.data();
        }
        if (const Step wait = takeBody(data, count))
            return wait;
        turn -= count;
    }
    return m_phase == Phase::Body ? Step(Wait{Wait::For::Turn, 0ms}) : std::nullopt;
}

Conversation::Step Conversation::takeBody(const char *data, qint64 length)
{
    m_bodyLeft -= length;
    m_moved += length;
    const qint64 dropAfter = m_handler->misbehaviour().dropAfterBytes;
    if (dropAfter >= 0 && m_head.request.bodyLength - m_bodyLeft >= dropAfter)
        return lose();
    if (m_context.recorder.isActive())
        m_context.recorder.keepBody(m_head.request, data, length, &m_recordedBody);
    try {
        m_handler->takeBody(data, length);
    } catch (...) {
        respond(m_handler->failure(std::current_exception()));
        return std::nullopt;
    }
    if (m_bodyLeft == 0)
        m_phase = Phase::Finish;
    return std::nullopt;
}

Conversation::Step Conversation::finish()
{
    try {
        respond(m_handler->finish());
    } catch (...) {
        respond(m_handler->failure(std::current_exception()));
    }
    return std::nullopt;
}

void Conversation::respond(HttpResponse response)
{
    m_sender.clear();
    if (!response.file.path.isEmpty() && !m_head.request.isHead
        && !m_sender.openFile(response.file))
        response = HttpResponse::error(500, QStringLiteral("The service cannot read this file."));
    const bool isUnread = m_bodyLeft > DrainBytes || (m_bodyLeft > 0 && m_head.expectsContinue);
    m_closes = !m_head.keepsAlive || isUnread || m_context.isStopping || m_context.isDraining;
    const bool hasBody = !m_head.request.isHead && response.status != 304;
    std::optional<Milliseconds> keepAlive;
    if (!m_closes)
        keepAlive = m_context.settings.limits.idle;
    m_sender.start(responseHead(response, keepAlive), hasBody ? response.body : QByteArray());
    m_fault = m_handler ? m_handler->misbehaviour() : Misbehaviour();
    if (m_fault.cutAfterBytes >= 0) {
        m_sender.cutBodyAfter(m_fault.cutAfterBytes);
        m_closes = true;
    }
    if (m_context.recorder.isActive() && !m_head.request.method.isEmpty())
        m_context.recorder.record(m_head.request, m_recordedBody, response, m_fault.isRequested);
    log(m_fault.isReplyLost ? 0 : response.status, hasBody ? response.bodyLength() : 0);
    m_handler
        .reset(); // when the client reads the response, everything of the request has been released
    openWindow(m_context.settings.limits.progress);
    m_phase = Phase::Send;
    if (m_fault.delayMs != 0 || m_fault.isReplyLost) {
        m_clock.start();
        m_phase = Phase::Delay;
    }
}

void Conversation::refuse(const HttpError &error)
{
    m_handler.reset();
    if (m_phase == Phase::Head)
        m_head = RequestHead();
    m_head.keepsAlive = false;
    m_bodyLeft = std::max<qint64>(m_bodyLeft, 1); // how much is left is not known
    m_in.clear();
    respond(HttpResponse::error(error));
}

void Conversation::log(int status, qint64 bytes)
{
    const HttpRequest &request = m_head.request;
    ServedRequest served;
    served.client = request.client.isEmpty() ? m_client : request.client;
    served.method = request.isHead ? QByteArrayLiteral("HEAD") : request.method;
    if (!request.method.isEmpty())
        served.path = m_context.settings.loggedPath(request);
    if (m_handler)
        served.user = m_handler->userName();
    served.status = status;
    served.bytes = bytes;
    served.received = std::max<qint64>(0, request.bodyLength - m_bodyLeft);
    served.milliseconds = m_clock.elapsed();
    m_context.settings.logger(served);
}

//! Ends a request without a response.
Conversation::Step Conversation::lose()
{
    log(0, 0);
    return Wait{};
}

Conversation::Step Conversation::delay()
{
    const bool isOver = m_fault.delayMs >= 0 && m_clock.hasExpired(m_fault.delayMs);
    const bool isPeerGone = isReadyWithin(m_socket, POLLRDHUP, 0ms);
    if (!isOver && !isPeerGone && !m_context.isStopping)
        return Wait{Wait::For::Time, DelayStep};
    if (m_fault.isReplyLost)
        return Wait{};
    m_phase = Phase::Send;
    return std::nullopt;
}

Conversation::Step Conversation::send()
{
    switch (m_sender.send(m_socket, &m_moved)) {
    case ResponseSender::Result::Blocked:
        return isReadySoon(POLLOUT) ? std::nullopt : Step(blocked(Wait::For::Room));
    case ResponseSender::Result::Paused:
        return Wait{Wait::For::Turn, 0ms};
    case ResponseSender::Result::Lost:
        return Wait{};
    case ResponseSender::Result::Sent:
        break;
    }
    m_sender.clear();
    if (!m_closes) {
        m_phase = Phase::Drain;
        openWindow(m_context.settings.limits.progress);
    } else if (m_bodyLeft > 0) {
        ::shutdown(m_socket, SHUT_WR);
        m_bodyLeft = LingerBytes;
        m_phase = Phase::Linger;
        openWindow(LingerPatience);
    } else {
        return Wait{};
    }
    return std::nullopt;
}

Conversation::Step Conversation::drain()
{
    const qint64 known = std::min<qint64>(m_bodyLeft, m_in.size());
    m_in.remove(0, static_cast<int>(known));
    m_bodyLeft -= known;
    switch (discard(&m_bodyLeft)) {
    case Discarded::Blocked:
        return blocked(Wait::For::Bytes);
    case Discarded::Ended:
        return Wait{};
    case Discarded::All:
        break;
    }
    startNext();
    return std::nullopt;
}

Conversation::Step Conversation::linger()
{
    return discard(&m_bodyLeft) == Discarded::Blocked ? blocked(Wait::For::Bytes) : Wait{};
}

Conversation::Discarded Conversation::discard(qint64 *left)
{
    std::vector<char> &block = bodyBlock();
    while (*left > 0) {
        const qint64 wanted = std::min<qint64>(*left, static_cast<qint64>(block.size()));
        const qint64 count = receive(m_socket, block.data(), static_cast<size_t>(wanted));
        if (count <= 0)
            return count == Blocked ? Discarded::Blocked : Discarded::Ended;
        *left -= count;
        m_moved += count;
    }
    return Discarded::All;
}

void Conversation::startNext()
{
    m_head = RequestHead();
    m_recordedBody.clear();
    m_hasSkippedLine = false;
    m_phase = Phase::Head;
    if (m_in.isEmpty()) {
        m_in = QByteArray(); // idle connections have no buffer
        openWindow(m_context.settings.limits.idle);
        isReadySoon(POLLIN);
    } else {
        openWindow(m_context.settings.limits.head);
        m_clock.start();
    }
}

//! Waits for a moment if no other connection has to wait for the thread.
bool Conversation::isReadySoon(short events) const
{
    return m_context.workers.hasFreeThread() && isReadyWithin(m_socket, events, ShortWait);
}

void Conversation::openWindow(Milliseconds patience)
{
    m_patience = patience;
    m_moved = 0;
}

Wait Conversation::blocked(Wait::For what)
{
    const HttpLimits &limits = m_context.settings.limits;
    if (m_moved >= limits.progressBytes)
        openWindow(m_phase == Phase::Linger ? LingerPatience : limits.progress);
    return {what, std::max(m_patience, 1ms)};
}

} // namespace service
