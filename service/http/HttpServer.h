#pragma once

#include <service/http/HttpMessages.h>

#include <QString>

#include <functional>
#include <memory>

namespace service {

//! \brief What a handler may do to the connection it answers on. Used to misbehave on request.
class ReplyControl
{
public:
    virtual ~ReplyControl() = default;
    virtual void cutReplyAfter(qint64 bodyBytes) = 0;
    virtual bool isPeerGone() const = 0;
};

//! What the log says about one request once it has been answered.
struct ServedRequest
{
    QString client;
    QString user;
    QByteArray verb;
    QString path; //!< safe to be logged
    int status = 0;
    qint64 bytes = 0;
    qint64 milliseconds = 0;
};

//! \brief HTTP/1.1 on a TCP port, with threads of its own; the one place that knows the HTTP library.
class HttpServer
{
public:
    struct Settings
    {
        QString address;
        quint16 port = 0; //!< 0 for any free one
        qint64 maxBodyBytes = 0;
    };
    //! Answers one request; called on the server's threads, several at once. May throw ConnectionLost
    //! to end the connection without an answer; other exceptions become 500.
    //! Fills user and path of the last argument for the log.
    using Handler = std::function<HttpResponse(HttpRequest &, ReplyControl &, ServedRequest &)>;
    using Logger = std::function<void(const ServedRequest &)>;

    HttpServer(const Settings &settings, Handler handler, Logger logger);
    ~HttpServer();

    //! Binds and serves; false with the reason in \a error when the address cannot be had.
    bool start(QString *error);

    //! Ends every connection and returns when the last request has ended.
    void stop();

    bool isStopping() const;
    quint16 port() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace service
