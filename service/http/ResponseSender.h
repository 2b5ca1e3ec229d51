#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace service {

struct FileBody;
struct ServerContext;

//! \brief Sends one response on a socket that does not block.
//!
//! A body in a file is read as the socket takes it. What waits in memory for slow clients is bounded by
//! HttpLimits::unreadBytes; beyond that it is moved to a temporary file.
class ResponseSender
{
public:
    enum class Result {
        Sent,
        Blocked, //!< the client must read first
        Paused, //!< much was sent; others want a turn
        Lost, //!< the connection has ended, or the rest cannot be sent
    };

    explicit ResponseSender(ServerContext &context) : m_context(context) {}
    ~ResponseSender() { clear(); }
    ResponseSender(const ResponseSender &) = delete;
    ResponseSender &operator=(const ResponseSender &) = delete;

    //! Makes \a head and \a body what is to be sent.
    void start(const QByteArray &head, const QByteArray &body);
    //! Opens the file that is to follow \a head; false, with the reason logged, if it cannot be read. To be called before
    //! start().
    bool openFile(const FileBody &file);

    //! Nothing beyond \a bytes of the body is sent.
    void cutBodyAfter(qint64 bytes);

    //! Adds to \a moved the number of bytes sent.
    Result send(int socket, qint64 *moved);

    void clear();

private:
    Result sendText(int socket, qint64 *moved);
    Result sendFile(int socket, qint64 *moved);
    //! Keeps the unsent rest within the bounds; false if there is no room for it.
    bool keepRest();
    bool moveRestToFile();
    void giveMemory();

    ServerContext &m_context;
    QByteArray m_head;
    QByteArray m_body;
    qint64 m_textSent = 0; //!< of head and body
    qint64 m_textLength = 0;
    int m_file = -1;
    qint64 m_fileOffset = 0;
    qint64 m_fileLeft = 0;
    qint64 m_heldMemory = 0;
    qint64 m_heldDisk = 0;
};

} // namespace service
