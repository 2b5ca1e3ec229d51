#include <service/http/HttpServer.h>

#include <service/http/Connection.h>
#include <service/storage/FileSync.h>

#include <QElapsedTimer>
#include <QSet>
#include <QThread>

#include <atomic>
#include <malloc.h>
#include <mutex>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace service {

namespace {

constexpr size_t ThreadCount = 64;
constexpr size_t RequestsPerConnection = 100000;
constexpr int Backlog = 256;
constexpr std::chrono::seconds TransferTimeout{60};
constexpr std::chrono::seconds IdleTimeout{30};
//! What is read and thrown away so that a refused request leaves the connection usable.
constexpr qint64 DrainBytes = Q_INT64_C(64) * 1024 * 1024;
constexpr size_t FileBlock = size_t(256) * 1024;

int setSocketOption(socket_t socket, int level, int option)
{
    const int on = 1;
    return ::setsockopt(socket, level, option, &on, sizeof(on));
}

void sendFile(const FileBody &file, const QByteArray &contentType, httplib::Response &out)
{
    auto source = std::make_shared<RawFile>(file.path, RawFile::Mode::ReadOnly);
    const qint64 start = file.offset;
    out.set_content_provider(
        static_cast<size_t>(file.length), contentType.toStdString(),
        [source, start](size_t offset, size_t length, httplib::DataSink &sink) {
            std::vector<char> block(std::min(length, FileBlock));
            try {
                const qint64 count =
                    source->readAt(start + static_cast<qint64>(offset), block.data(),
                                   static_cast<qint64>(block.size()));
                return count > 0 && sink.write(block.data(), static_cast<size_t>(count));
            } catch (const StorageError &) {
                return false;
            }
        });
}

void fill(httplib::Response &out, const HttpResponse &response)
{
    out.status = response.status;
    for (const auto &header : response.headers)
        out.set_header(header.first.toStdString(), header.second.toStdString());
    out.set_header("X-Content-Type-Options", "nosniff");
    if (response.file.path.isEmpty() || response.file.length == 0) {
        out.set_content(response.body.constData(), static_cast<size_t>(response.body.size()),
                        response.contentType.toStdString());
    } else {
        sendFile(response.file, response.contentType, out);
    }
}

class ConnectionControl final : public ReplyControl
{
public:
    explicit ConnectionControl(Connection &connection) : m_connection(connection) {}
    void cutReplyAfter(qint64 bodyBytes) override { m_connection.cutReplyAfter(bodyBytes); }
    bool isPeerGone() const override { return m_connection.isPeerGone(); }

private:
    Connection &m_connection;
};

//! \throws HttpError for a length that cannot be read
qint64 bodyLength(const HttpRequest &request, qint64 maxBodyBytes)
{
    if (request.headers.contains("transfer-encoding"))
        throw HttpError(411, QStringLiteral("Send the body with a Content-Length, not in pieces."));
    const QByteArray text = request.header("content-length");
    if (text.isEmpty())
        return 0;
    bool isNumber = false;
    const qint64 length = text.toLongLong(&isNumber);
    if (!isNumber || length < 0)
        throw HttpError(400, QStringLiteral("The Content-Length is not a number."));
    if (length > maxBodyBytes) {
        throw HttpError(
            413, QStringLiteral("The body is larger than the %1 bytes allowed.").arg(maxBodyBytes));
    }
    return length;
}

HttpRequest convert(const httplib::Request &in)
{
    HttpRequest request;
    request.verb = QByteArray::fromStdString(in.method == "HEAD" ? "GET" : in.method);
    request.client =
        QStringLiteral("%1:%2").arg(QString::fromStdString(in.remote_addr)).arg(in.remote_port);
    for (const auto &header : in.headers)
        request.headers.insert(QByteArray::fromStdString(header.first).toLower(),
                               QByteArray::fromStdString(header.second));
    return request;
}

} // namespace

class HttpServer::Private final : public httplib::Server
{
public:
    Private(const Settings &serverSettings, HttpServer::Handler &&handlerFunction,
            HttpServer::Logger &&loggerFunction)
        : settings(serverSettings), handler(std::move(handlerFunction)),
          logger(std::move(loggerFunction))
    {}

    void configure();
    HttpResponse answer(HttpRequest &request, Connection &connection, ServedRequest &served) const;
    HttpResponse guarded(HttpRequest &request, Connection &connection, ServedRequest &served) const;
    void serve(const httplib::Request &in, httplib::Response &out) const;
    void listenBacklog() { ::listen(svr_sock_, Backlog); }

    Settings settings;
    HttpServer::Handler handler;
    HttpServer::Logger logger;
    std::atomic<bool> isStopping{false};
    quint16 port = 0;
    std::thread listener;
    std::mutex connectionsLock;
    QSet<Connection *> connections;

private:
    // The library's extension point: everything on one accepted connection.
    bool process_and_close_socket(socket_t sock) override; // NOLINT(readability-identifier-naming)
    bool serveOne(Connection &connection, bool isLast);

    static thread_local Connection *currentConnection; //!< the one that this thread serves
};

thread_local Connection *HttpServer::Private::currentConnection = nullptr;

void HttpServer::Private::configure()
{
    // What answers say about kept connections; the waiting itself is done here.
    set_keep_alive_max_count(RequestsPerConnection);
    set_keep_alive_timeout(IdleTimeout.count());
    // With a heap for each thread, as usual, every thread would come to keep what its largest answer took.
    mallopt(M_ARENA_MAX, 2);
    new_task_queue = [] { return new httplib::ThreadPool(ThreadCount); };
    // Not SO_REUSEPORT, the library's default: two services would share a port without notice.
    set_socket_options([](socket_t socket) { setSocketOption(socket, SOL_SOCKET, SO_REUSEADDR); });
    // All routing is ours, so one handler in front of the library's takes every request.
    set_pre_routing_handler([this](const httplib::Request &in, httplib::Response &out) {
        serve(in, out);
        return HandlerResponse::Handled;
    });
    // What the library refuses by itself: a line that is no HTTP, an address too long.
    const HandlerWithResponse refuse = [](const httplib::Request &, httplib::Response &out) {
        if (!out.body.empty() || out.get_header_value("Content-Type") != "")
            return HandlerResponse::Unhandled;
        QString sentence = QStringLiteral("The request is not valid HTTP.");
        if (out.status == 414)
            sentence = QStringLiteral("The address of the request is too long.");
        else if (out.status == 416)
            sentence = QStringLiteral("The Range header cannot be read.");
        fill(out, HttpResponse::error(out.status, sentence));
        return HandlerResponse::Handled;
    };
    set_error_handler(refuse);
}

HttpResponse HttpServer::Private::answer(HttpRequest &request, Connection &connection,
                                         ServedRequest &served) const
{
    ConnectionControl control(connection);
    try {
        return handler(request, control, served);
    } catch (const ConnectionLost &) {
        throw;
    } catch (const HttpError &error) {
        return HttpResponse::error(error.status(), QString::fromUtf8(error.what()));
    } catch (const std::exception &error) {
        qWarning("vell-service: %s", error.what());
        return HttpResponse::error(500, QStringLiteral("The service failed; its log says why."));
    }
}

HttpResponse HttpServer::Private::guarded(HttpRequest &request, Connection &connection,
                                          ServedRequest &served) const
{
    qint64 length = 0;
    try {
        length = bodyLength(request, settings.maxBodyBytes);
    } catch (const HttpError &error) {
        connection.closeAfterReply(); // where the body ends is unknown, or too far away
        return HttpResponse::error(error.status(), QString::fromUtf8(error.what()));
    }
    BodyReader body(
        [&connection](char *data, qint64 size) {
            return static_cast<qint64>(connection.read(data, static_cast<size_t>(size)));
        },
        length);
    request.body = &body;
    HttpResponse response = answer(request, connection, served);
    if (!body.drain(DrainBytes))
        connection.closeAfterReply();
    return response;
}

void HttpServer::Private::serve(const httplib::Request &in, httplib::Response &out) const
{
    Connection &connection = *currentConnection;
    QElapsedTimer clock;
    clock.start();
    HttpRequest request = convert(in);
    ServedRequest served;
    served.client = request.client;
    served.verb = QByteArray::fromStdString(in.method);
    try {
        parseTarget(QByteArray::fromStdString(in.target), request);
        served.path = request.path();
        const HttpResponse response = guarded(request, connection, served);
        fill(out, response);
        served.status = response.status;
        served.bytes = response.file.path.isEmpty() ? response.body.size() : response.file.length;
    } catch (const HttpError &error) {
        fill(out, HttpResponse::error(error.status(), QString::fromUtf8(error.what())));
        served.status = error.status();
        connection.closeAfterReply();
    } catch (const ConnectionLost &) {
        connection.drop();
    } catch (const std::exception &error) {
        qWarning("vell-service: %s", error.what());
        fill(out,
             HttpResponse::error(500, QStringLiteral("The service failed; its log says why.")));
        served.status = 500;
        connection.closeAfterReply();
    }
    if (connection.closes())
        out.set_header("Connection", "close");
    served.milliseconds = clock.elapsed();
    logger(served);
}

bool HttpServer::Private::process_and_close_socket(socket_t sock)
{
    setSocketOption(sock, IPPROTO_TCP, TCP_NODELAY);
    Connection connection(sock, TransferTimeout);
    {
        const std::lock_guard<std::mutex> lock(connectionsLock);
        connections.insert(&connection);
    }
    currentConnection = &connection;
    size_t served = 0;
    while (!isStopping && connection.waitForRequest(IdleTimeout)) {
        if (!serveOne(connection, ++served == RequestsPerConnection))
            break;
    }
    currentConnection = nullptr;
    const std::lock_guard<std::mutex> lock(connectionsLock);
    connections.remove(&connection);
    return true;
}

bool HttpServer::Private::serveOne(Connection &connection, bool isLast)
{
    connection.beginRequest();
    bool isClosed = false;
    const bool isWritten = process_request(connection, isLast, isClosed, [](httplib::Request &in) {
        in.ranges.clear(); // handled where the file is known
    });
    // The library does not notice that a head could not be written.
    if (!isWritten || connection.isDropped())
        return false;
    if (connection.closes())
        connection.linger();
    return !isClosed && !isLast && !connection.closes();
}

HttpServer::HttpServer(const Settings &settings, Handler handler, Logger logger)
    : d(std::make_unique<Private>(settings, std::move(handler), std::move(logger)))
{}

HttpServer::~HttpServer()
{
    stop();
}

bool HttpServer::start(QString *error)
{
    d->configure();
    const std::string address = d->settings.address.toStdString();
    int port = d->settings.port;
    if (port == 0)
        port = d->bind_to_any_port(address);
    else if (!d->bind_to_port(address, port))
        port = -1;
    if (port <= 0) {
        *error =
            QStringLiteral("The address %1:%2 cannot be listened on; another program may have it.")
                .arg(d->settings.address)
                .arg(d->settings.port);
        return false;
    }
    d->port = static_cast<quint16>(port);
    d->listenBacklog();
    d->listener = std::thread([this] { d->listen_after_bind(); });
    while (!d->is_running())
        std::this_thread::yield();
    return true;
}

void HttpServer::stop()
{
    if (!d->listener.joinable())
        return;
    d->isStopping = true;
    d->httplib::Server::stop();
    {
        const std::lock_guard<std::mutex> lock(d->connectionsLock);
        for (Connection *connection : qAsConst(d->connections))
            connection->shutDown();
    }
    d->listener.join();
}

bool HttpServer::isStopping() const
{
    return d->isStopping;
}

quint16 HttpServer::port() const
{
    return d->port;
}

} // namespace service
