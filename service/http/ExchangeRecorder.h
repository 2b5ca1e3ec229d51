#pragma once

#include <QFile>

#include <mutex>

namespace service {

struct HttpRequest;
struct HttpResponse;

//! \brief Writes requests and their responses down, to be compared with the written contract.
//!
//! Active while the environment variable VELL_RECORD_EXCHANGES names a folder: each server has a file of its own there,
//! with one JSON object in a line for each exchange. Headers of requests and contents of files do not get in, but new tokens
//! and share codes do: for tests, not for a service with real data. Callable from any thread.
class ExchangeRecorder
{
public:
    ExchangeRecorder();

    bool isActive() const { return m_isActive; }

    //! Appends a piece of a body to \a kept if record() is to have it: JSON of a reasonable size.
    static void keepBody(const HttpRequest &request, const char *data, qint64 length,
                         QByteArray *kept);

    //! \param isFault whether the response is a misbehaviour that was asked for
    void record(const HttpRequest &request, const QByteArray &requestBody,
                const HttpResponse &response, bool isFault);

private:
    QFile m_file;
    bool m_isActive = false;
    std::mutex m_lock;
};

} // namespace service
