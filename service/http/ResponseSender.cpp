#include <service/http/ResponseSender.h>

#include <service/http/ServerContext.h>

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace service {

namespace {

constexpr qint64 BytesPerTurn = Q_INT64_C(4) * 1024 * 1024;

constexpr qint64 FileBlock = Q_INT64_C(256) * 1024;

bool isBlocked(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

void ResponseSender::start(const QByteArray &head, const QByteArray &body)
{
    m_head = head;
    m_body = body;
    m_textLength = m_head.size() + m_body.size();
}

bool ResponseSender::openFile(const FileBody &file)
{
    m_file = ::open(QFile::encodeName(file.path).constData(), O_RDONLY | O_CLOEXEC);
    if (m_file < 0) {
        qWarning("vell-service: %s: %s", qUtf8Printable(file.path), std::strerror(errno));
        return false;
    }
    m_fileOffset = file.offset;
    m_fileLeft = file.length;
    return true;
}

void ResponseSender::cutBodyAfter(qint64 bytes)
{
    m_textLength = std::min(m_textLength, m_head.size() + bytes);
    m_fileLeft = std::min(m_fileLeft, bytes);
}

ResponseSender::Result ResponseSender::send(int socket, qint64 *moved)
{
    const Result result = sendText(socket, moved);
    if (result != Result::Sent)
        return result == Result::Blocked && !keepRest() ? Result::Lost : result;
    giveMemory();
    return m_fileLeft > 0 ? sendFile(socket, moved) : Result::Sent;
}

ResponseSender::Result ResponseSender::sendText(int socket, qint64 *moved)
{
    while (m_textSent < m_textLength) {
        const qint64 fromHead = std::max<qint64>(0, m_head.size() - m_textSent);
        const qint64 bodyStart = std::max<qint64>(0, m_textSent - m_head.size());
        std::array<iovec, 2> pieces{};
        pieces[0].iov_base = m_head.data() + m_head.size() - fromHead;
        pieces[0].iov_len = static_cast<size_t>(fromHead);
        pieces[1].iov_base = m_body.isEmpty() ? nullptr : m_body.data() + bodyStart;
        pieces[1].iov_len = static_cast<size_t>(m_textLength - m_textSent - fromHead);
        msghdr message = {};
        message.msg_iov = pieces.data();
        message.msg_iovlen = pieces.size();
        const int more = m_fileLeft > 0 ? MSG_MORE : 0;
        const ssize_t count = ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT | more);
        if (count < 0)
            return isBlocked(errno) ? Result::Blocked : Result::Lost;
        m_textSent += count;
        *moved += count;
    }
    return Result::Sent;
}

ResponseSender::Result ResponseSender::sendFile(int socket, qint64 *moved)
{
    thread_local std::vector<char> block(static_cast<size_t>(FileBlock));
    qint64 turn = std::min(m_fileLeft, BytesPerTurn);
    while (turn > 0) {
        // Data that the socket does not accept is read again later, so that waiting connections need no buffer. (sendfile() is slower.)
        const qint64 wanted = std::min(turn, FileBlock);
        const ssize_t read =
            ::pread(m_file, block.data(), static_cast<size_t>(wanted), m_fileOffset);
        if (read <= 0)
            return Result::Lost; // the file is shorter than it was
        const ssize_t count =
            ::send(socket, block.data(), static_cast<size_t>(read), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0)
            return isBlocked(errno) ? Result::Blocked : Result::Lost;
        m_fileOffset += count;
        m_fileLeft -= count;
        turn -= count;
        *moved += count;
    }
    return m_fileLeft > 0 ? Result::Paused : Result::Sent;
}

bool ResponseSender::keepRest()
{
    if (m_heldMemory > 0)
        return true;
    const qint64 size = m_head.size() + m_body.size();
    if ((m_context.unreadBytes += size) <= m_context.settings.limits.unreadBytes) {
        m_heldMemory = size;
        return true;
    }
    m_context.unreadBytes -= size;
    if (m_file >= 0 || moveRestToFile())
        return true;
    qWarning("vell-service: a response is given up: too many clients do not read theirs");
    return false;
}

bool ResponseSender::moveRestToFile()
{
    const QByteArray rest = (m_head + m_body).mid(static_cast<int>(m_textSent));
    const qint64 wanted = m_textLength - m_textSent;
    m_heldDisk = wanted;
    if ((m_context.unreadDiskBytes += wanted) > m_context.settings.limits.unreadDiskBytes)
        return false;
    const QByteArray folder = QFile::encodeName(m_context.settings.temporaryFolder);
    m_file = ::open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (m_file < 0)
        return false;
    for (qint64 done = 0; done < wanted;) {
        const ssize_t count =
            ::write(m_file, rest.constData() + done, static_cast<size_t>(wanted - done));
        if (count <= 0)
            return false;
        done += count;
    }
    m_head.clear();
    m_body.clear();
    m_textSent = 0;
    m_textLength = 0;
    m_fileLeft = wanted;
    return true;
}

void ResponseSender::giveMemory()
{
    m_context.unreadBytes -= std::exchange(m_heldMemory, 0);
    m_head.clear();
    m_body.clear();
    m_textSent = 0;
    m_textLength = 0;
}

void ResponseSender::clear()
{
    giveMemory();
    m_context.unreadDiskBytes -= std::exchange(m_heldDisk, 0);
    if (m_file >= 0)
        ::close(std::exchange(m_file, -1));
    m_fileOffset = 0;
    m_fileLeft = 0;
}

} // namespace service
