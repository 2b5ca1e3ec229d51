#pragma once

#include <QTimer>

#include <functional>

//! \brief Tells when an upload in chunks gets no further: nothing moves any more, or the same chunk goes up again and again.
class UploadWatch
{
public:
    //! \param end called then, from the event loop or noteBytes()
    explicit UploadWatch(std::function<void()> end);

    void start() { m_timer.start(); }
    void stop() { m_timer.stop(); }
    void noteBytes(qint64 sentBytes);

private:
    const std::function<void()> m_end;
    QTimer m_timer;
    qint64 m_lastBytes = 0;
    qint64 m_mostBytes = 0;
    int m_repeats = 0; // chunks that were sent again since one was kept
};
