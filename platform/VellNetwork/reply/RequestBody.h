#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QPointer>

#include <optional>

//! \brief The body of a request: bytes in memory, or a device that is read in blocks.
//!
//! If a device fails or ends before its size, this is an error, not the end of the body.
class RequestBody
{
public:
    //! Large enough for a fast connection, small enough to be read between two frames.
    static constexpr qint64 BlockBytes = 262144;

    //! No body.
    RequestBody() = default;

    static RequestBody inMemory(const QByteArray &bytes);

    //! \param device must be open and have a size; not owned
    static RequestBody streamed(QIODevice *device);

    //! Returns the bytes in memory; empty for no body and for a device.
    const std::optional<QByteArray> &bytes() const { return m_bytes; }
    bool isStreamed() const { return m_streamedBytes >= 0; }
    qint64 streamedBytes() const { return m_streamedBytes; }
    qint64 size() const { return m_bytes ? m_bytes->size() : qMax(m_streamedBytes, qint64(0)); }

    //! Starts again with the first byte. \return false if the device does not support it
    bool restart();

    //! Returns the next block; empty at the end, or if the device fails: see isBroken().
    QByteArray nextBlock();
    bool isBroken() const { return m_isBroken; }

private:
    std::optional<QByteArray> m_bytes;
    QPointer<QIODevice> m_device;
    qint64 m_streamedBytes = -1;
    qint64 m_readBytes = 0;
    bool m_isBroken = false;
};
