#include <service/http/HttpServer.h>

#include <service/http/Connection.h>
#include <service/http/ServerContext.h>

#include <QElapsedTimer>
#include <QThread>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>

#include <algorithm>
#include <array>
#include <malloc.h>
#include <sys/resource.h>
#include <utility>

namespace service {

namespace {

using namespace std::chrono_literals;
using boost::asio::ip::tcp;

constexpr int Backlog = 1024;
constexpr size_t WaitingThreads = 2;
constexpr rlim_t OtherDescriptors = 300; //!< databases, contents, logs
constexpr auto AcceptPause = 100ms; //!< after an error, such as too many open files
constexpr int LargeBlock = 1024 * 1024;
constexpr unsigned long StopStepMs = 5;

QString textOf(const tcp::endpoint &endpoint)
{
    const QString address = QString::fromStdString(endpoint.address().to_string());
    const QString host =
        endpoint.address().is_v6() ? QLatin1Char('[') + address + QLatin1Char(']') : address;
    return QStringLiteral("%1:%2").arg(host).arg(endpoint.port());
}

//! Returns the number of descriptors that are available for connections.
int connectionsAllowed(int wanted)
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return wanted;
    const rlim_t free = limit.rlim_cur > 2 * OtherDescriptors ? limit.rlim_cur - OtherDescriptors
                                                              : limit.rlim_cur / 2;
    return static_cast<int>(std::min<rlim_t>(static_cast<rlim_t>(wanted), free));
}

} // namespace

class HttpServer::Private
{
public:
    explicit Private(Settings settings) : context(std::move(settings)) {}

    void listen();
    void accept();
    void accepted(tcp::socket socket, WaitingThread &home);
    template <typename Function>
    void onEach(Function function);

    // Must outlive the connections, which use them.
    std::atomic<int> connectionCount{0};
    ServerContext context;
    std::array<WaitingThread, WaitingThreads> threads;
    tcp::acceptor acceptor{threads.front().io};
    boost::asio::steady_timer pause{threads.front().io};
    size_t nextThread = 0;
    int maxConnections = 0;
    bool isAcceptFailing = false;
    quint16 port = 0;
    bool isRunning = false;
};

void HttpServer::Private::listen()
{
    tcp::resolver resolver(threads.front().io);
    const auto found = resolver.resolve(context.settings.address.toStdString(),
                                        std::to_string(context.settings.port),
                                        tcp::resolver::passive | tcp::resolver::numeric_service);
    const tcp::endpoint endpoint = found.begin()->endpoint();
    acceptor.open(endpoint.protocol());
    acceptor.set_option(tcp::acceptor::reuse_address(true));
    acceptor.bind(endpoint);
    acceptor.listen(Backlog);
    port = acceptor.local_endpoint().port();
}

void HttpServer::Private::accept()
{
    WaitingThread &home = threads.at(nextThread++ % WaitingThreads);
    acceptor.async_accept(
        home.io, [this, &home](const boost::system::error_code &error, tcp::socket socket) {
            if (context.isStopping)
                return;
            if (!error) {
                isAcceptFailing = false;
                accepted(std::move(socket), home);
                accept();
                return;
            }
            if (!std::exchange(isAcceptFailing, true))
                qWarning("vell-service: no new connections for now: %s", error.message().c_str());
            pause.expires_after(AcceptPause);
            pause.async_wait([this](const boost::system::error_code &) {
                if (!context.isStopping)
                    accept();
            });
        });
}

void HttpServer::Private::accepted(tcp::socket socket, WaitingThread &home)
{
    boost::system::error_code error;
    const tcp::endpoint client = socket.remote_endpoint(error);
    if (error)
        return; // closed already
    socket.set_option(tcp::no_delay(true), error);
    const bool isFull = connectionCount >= maxConnections;
    auto connection = std::make_shared<Connection>(std::move(socket), textOf(client), home, context,
                                                   connectionCount);
    boost::asio::post(home.io, [this, connection, isFull, &home] {
        if (isFull && home.idle.empty())
            return; // no connection is idle
        if (isFull)
            home.idle.front()->end();
        connection->start();
    });
}

template <typename Function>
void HttpServer::Private::onEach(Function function)
{
    for (WaitingThread &home : threads) {
        boost::asio::post(home.io, [&home, function] {
            const auto connections =
                home.connections; // a copy: connections remove themselves from the set
            for (const auto &connection : connections)
                function(*connection);
        });
    }
}

HttpServer::HttpServer(Settings settings) : d(std::make_unique<Private>(std::move(settings))) {}

HttpServer::~HttpServer()
{
    try {
        stop();
    } catch (const std::exception &error) {
        qFatal("vell-service: %s",
               error.what()); // its threads use objects that would be destroyed now
    }
}

bool HttpServer::start(QString *error)
{
    // With one heap for each thread, the default, every thread would keep the memory of its largest response.
    mallopt(M_ARENA_MAX, 2);
    // Large blocks are returned to the system when they are freed; by default the C library soon keeps them.
    mallopt(M_MMAP_THRESHOLD, LargeBlock);
    d->maxConnections = connectionsAllowed(d->context.settings.limits.maxConnections);
    try {
        d->listen();
    } catch (const boost::system::system_error &failure) {
        *error = QStringLiteral("The address %1:%2 cannot be listened on: %3.")
                     .arg(d->context.settings.address)
                     .arg(d->context.settings.port)
                     .arg(QString::fromStdString(failure.code().message()));
        return false;
    }
    d->isRunning = true;
    d->accept();
    for (WaitingThread &home : d->threads) {
        home.thread = std::thread([&home] {
            const auto guard = boost::asio::make_work_guard(home.io);
            home.io.run();
        });
    }
    return true;
}

void HttpServer::drain()
{
    d->context.isDraining = true;
}

void HttpServer::stop()
{
    if (!std::exchange(d->isRunning, false))
        return;
    d->context.isStopping = true;
    boost::asio::post(d->threads.front().io, [this] {
        boost::system::error_code ignored;
        d->acceptor.close(ignored);
        d->pause.cancel();
    });
    d->onEach([](Connection &connection) { connection.stop(); });
    QElapsedTimer clock;
    clock.start();
    while (d->connectionCount > 0 && !clock.hasExpired(d->context.settings.limits.stopping.count()))
        QThread::msleep(StopStepMs);
    d->onEach([](Connection &connection) { connection.end(); });
    while (d->connectionCount > 0) // workers return the connections that they are using
        QThread::msleep(StopStepMs);
    for (WaitingThread &home : d->threads) {
        home.io.stop();
        home.thread.join();
    }
    // Pending handlers, such as that of the cancelled accept, own a socket of the other thread's io_context.
    for (WaitingThread &home : d->threads) {
        home.io.restart();
        home.io.poll();
    }
}

quint16 HttpServer::port() const
{
    return d->port;
}

int HttpServer::connectionCount() const
{
    return d->connectionCount;
}

} // namespace service
