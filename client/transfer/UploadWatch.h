#pragma once

#include <QTimer>

#include <functional>

//! \brief Detects a stalled upload by chunks: nothing is sent any more, or the same chunk is sent again and again.
class UploadWatch
{
public:
    //! \param end called when the upload is stalled, from the event loop or from noteBytes()
    explicit UploadWatch(std::function<void()> end);

    void start() { m_timer.start(); }
    void stop() { m_timer.stop(); }
    void noteBytes(qint64 sentBytes);

private:
    const std::function<void()> m_end;
    QTimer m_timer;
    qint64 m_lastBytes = 0;
    qint64 m_mostBytes = 0;
    int m_repeats = 0; // chunks sent again since the last new one
};
