#pragma once

#include <QByteArray>

#include <array>
#include <atomic>

namespace service {

struct ServedRequest;

//! \brief What a service has done since it was started, as text for Prometheus. Thread-safe.
class Metrics
{
public:
    //! Counts a request by its method and the class of its status, with its duration and the bytes of both bodies.
    void count(const ServedRequest &request);
    void countUpload() { ++m_uploads; } //!< a content is complete
    void countChunk() { ++m_chunks; }

    //! Returns everything in the text format, version 0.0.4.
    QByteArray text() const;

    //! Appends one number with its lines of explanation. \param type "counter" or "gauge"
    static void append(QByteArray &text, const char *name, const char *type, const char *help,
                       qint64 value);

private:
    static constexpr int Methods = 6;
    static constexpr int StatusClasses = 6;
    static constexpr int Bounds = 12;

    void appendRequests(QByteArray &text) const;
    void appendDurations(QByteArray &text) const;

    std::array<std::array<std::atomic<qint64>, StatusClasses>, Methods> m_requests{};
    std::array<std::atomic<qint64>, Bounds> m_durations{}; //!< the last one is above all bounds
    std::atomic<qint64> m_milliseconds{0};
    std::atomic<qint64> m_received{0};
    std::atomic<qint64> m_sent{0};
    std::atomic<qint64> m_uploads{0};
    std::atomic<qint64> m_chunks{0};
};

} // namespace service
