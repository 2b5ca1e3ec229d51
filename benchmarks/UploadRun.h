#pragma once

#include <QJsonObject>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <vector>

//! \brief How long the events of this thread had to wait, seen by a timer of 1 ms.
class TickWatch : public QObject
{
public:
    void start();
    void stop();

    //! What was seen since the start or the last call: "ticks", "p999_ms", "max_ms" of the time between two ticks.
    QJsonObject take();

private:
    using Clock = std::chrono::steady_clock;
    void tick();

    QTimer m_timer{this};
    Clock::time_point m_last;
    std::vector<double> m_gapsMs;
};

//! \brief A TickWatch on a thread that does nothing else: what the machine itself takes away.
class ControlWatch
{
public:
    ControlWatch();
    ~ControlWatch();
    Q_DISABLE_COPY(ControlWatch)

    QJsonObject take();

private:
    QThread m_thread;
    TickWatch m_ticks;
};

//! \brief The largest memory that this process has had so far, in KiB.
qint64 peakMemoryKiB();

//! \brief Uploads the file by the job. \return how it went, see below; empty when it failed
QJsonObject runJob(const QString &filePath, bool isWatched);

//! \brief Computes the MD5 and then sends the bodies that the job would send, one after the other, by nothing
//! but libcurl on one connection. \return how it went; empty when it failed
//!
//! Both give "seconds" of wall time and "growth_kib", by how much the peak of the memory has grown; the
//! watched job also what TickWatch has seen as "hashing" and "sending", and what ControlWatch has seen meanwhile as
//! "hashing_control" and "sending_control".
QJsonObject runBare(const QString &filePath);
