#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QPointer>

#include <optional>

//! \brief The body of a request on its way out: bytes in memory, or a device that is read in blocks.
//!
//! A device that fails or ends before its size is never taken for the end of the body.
class RequestBody
{
public:
    //! Large enough to keep a connection busy, small enough to be read between two frames.
    static constexpr qint64 BlockBytes = 262144;

    //! None at all.
    RequestBody() = default;

    static RequestBody inMemory(const QByteArray &bytes);

    //! Reads from \a device, which is open, has a size and stays with its owner.
    static RequestBody streamed(QIODevice *device);

    //! Empty for no body and for one that is streamed.
    const std::optional<QByteArray> &bytes() const { return m_bytes; }
    bool isStreamed() const { return m_streamedBytes >= 0; }
    qint64 streamedBytes() const { return m_streamedBytes; }
    qint64 size() const { return m_bytes ? m_bytes->size() : qMax(m_streamedBytes, qint64(0)); }

    //! Starts again from the first byte. \return false when the device does not allow it
    bool restart();

    //! The next block; empty at the end, and when the device fails, which isBroken() then tells.
    QByteArray nextBlock();
    bool isBroken() const { return m_isBroken; }

private:
    std::optional<QByteArray> m_bytes;
    QPointer<QIODevice> m_device;
    qint64 m_streamedBytes = -1;
    qint64 m_readBytes = 0;
    bool m_isBroken = false;
};
