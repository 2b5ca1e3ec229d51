#include "RequestBody.h"

RequestBody RequestBody::inMemory(const QByteArray &bytes)
{
    RequestBody body;
    body.m_bytes = bytes;
    return body;
}

RequestBody RequestBody::streamed(QIODevice *device)
{
    RequestBody body;
    body.m_device = device;
    body.m_streamedBytes = device->size();
    return body;
}

bool RequestBody::restart()
{
    m_readBytes = 0;
    return !isStreamed() || (m_device && m_device->reset());
}

QByteArray RequestBody::nextBlock()
{
    const qint64 wanted = qMin(BlockBytes, m_streamedBytes - m_readBytes);
    if (wanted <= 0 || m_isBroken)
        return {};
    QByteArray block(int(wanted), Qt::Uninitialized);
    qint64 count = 0;
    while (count < wanted) {
        const qint64 read = m_device ? m_device->read(block.data() + count, wanted - count) : -1;
        if (read <= 0) {
            m_isBroken = true;
            return {};
        }
        count += read;
    }
    m_readBytes += count;
    return block;
}
