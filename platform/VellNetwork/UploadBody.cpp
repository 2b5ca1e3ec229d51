#include "UploadBody.h"

UploadBody::UploadBody(QIODevice *source, QObject *parent)
    : QIODevice(parent), m_source(source), m_size(source->size()), m_taken(m_size == 0)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool UploadBody::reset()
{
    if (m_taken && !(m_mayResend && m_mayResend())) {
        Q_EMIT resendRefused();
        return false;
    }
    m_taken = m_size == 0;
    return m_source && m_source->reset() && QIODevice::reset();
}

qint64 UploadBody::readData(char *data, qint64 maxSize)
{
    const qint64 wanted = qMin(maxSize, m_size - pos());
    if (wanted <= 0 || m_broken)
        return 0;
    const qint64 count = m_source ? m_source->read(data, wanted) : -1;
    if (count <= 0) {
        m_broken = true;
        // Queued: Qt is in the middle of reading, and the listener ends the request.
        QMetaObject::invokeMethod(this, &UploadBody::broken, Qt::QueuedConnection);
        return 0;
    }
    m_taken = true;
    Q_EMIT moved();
    return count;
}

qint64 UploadBody::writeData(const char *, qint64)
{
    return -1;
}
