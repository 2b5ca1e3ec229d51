#pragma once

#include <QByteArray>

#include <chrono>
#include <functional>
#include <vector>

//! \brief A connection to a service of this machine that sends one request after the other. Ends the program if the connection ends.
class HttpCaller
{
public:
    using Clock = std::chrono::steady_clock;

    explicit HttpCaller(quint16 port);
    ~HttpCaller();
    HttpCaller(const HttpCaller &) = delete;
    HttpCaller &operator=(const HttpCaller &) = delete;

    int socket() const { return m_socket; }
    void sendAll(const char *data, qint64 length) const;
    //! Sends a request as it is.
    void ask(const QByteArray &request);
    //! Reads what is there; true once the response is complete.
    bool isAnswered();
    //! Waits for the response.
    QByteArray answer();

    //! The last complete response.
    const QByteArray &response() const { return m_response; }
    bool isSuccess() const { return m_response.startsWith("HTTP/1.1 2"); }
    //! From the last request until now.
    double milliseconds() const;

private:
    int m_socket = -1;
    QByteArray m_in;
    QByteArray m_response;
    Clock::time_point m_start;
};

struct HttpLoad
{
    double seconds = 0;
    std::vector<double> timesMs; //!< in the order of the responses
    std::vector<bool> isChange; //!< of each: its method is not GET
    qint64 failures = 0; //!< other statuses than 2xx
    QByteArray failure; //!< the last of those responses
};

//! Sends requests on so many connections for that time; each connection sends the next as soon as it has the response.
HttpLoad runLoad(quint16 port, int connections, std::chrono::milliseconds duration,
                 const std::function<QByteArray()> &nextRequest);
