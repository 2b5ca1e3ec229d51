#pragma once

#include <QFile>

#include <mutex>

namespace service {

struct HttpRequest;
struct HttpResponse;

//! \brief Records requests and their responses, so that they can be compared with docs/openapi.yaml.
//!
//! Active if the environment variable VELL_RECORD_EXCHANGES is set to a folder. Each server writes a file there, with one JSON object
//! per line for each exchange. Headers of requests and contents of files are not recorded, but new tokens and share codes are: use it
//! for tests, not with real data. Thread-safe.
class ExchangeRecorder
{
public:
    ExchangeRecorder();

    bool isActive() const { return m_isActive; }

    //! Appends a piece of a body to \a kept if it is to be recorded: JSON that is not too large.
    static void keepBody(const HttpRequest &request, const char *data, qint64 length,
                         QByteArray *kept);

    //! \param isFault true if the response was changed by a fault
    void record(const HttpRequest &request, const QByteArray &requestBody,
                const HttpResponse &response, bool isFault);

private:
    QFile m_file;
    bool m_isActive = false;
    std::mutex m_lock;
};

} // namespace service
