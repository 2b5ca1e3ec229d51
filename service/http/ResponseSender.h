#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace service {

struct FileBody;
struct ServerContext;

//! \brief Sends one response on a non-blocking socket.
//!
//! A body in a file is read while it is sent. HttpLimits::unreadBytes limits the memory of responses to slow clients; above that they
//! are moved to a temporary file.
class ResponseSender
{
public:
    enum class Result {
        Sent,
        Blocked, //!< the client must read first
        Paused, //!< much was sent; other connections have their turn
        Lost, //!< the connection has ended, or the rest cannot be sent
    };

    explicit ResponseSender(ServerContext &context) : m_context(context) {}
    ~ResponseSender() { clear(); }
    ResponseSender(const ResponseSender &) = delete;
    ResponseSender &operator=(const ResponseSender &) = delete;

    //! Sets the head and the body to be sent.
    void start(const QByteArray &head, const QByteArray &body);
    //! Opens the file that follows the head. If it cannot be read, logs the reason and returns false. To be called before start().
    bool openFile(const FileBody &file);

    //! Sends at most \a bytes of the body.
    void cutBodyAfter(qint64 bytes);

    //! Adds the number of bytes sent to \a moved.
    Result send(int socket, qint64 *moved);

    void clear();

private:
    Result sendText(int socket, qint64 *moved);
    Result sendFile(int socket, qint64 *moved);
    //! Moves the unsent rest to a file if the limit is exceeded; false if there is no room for it.
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
