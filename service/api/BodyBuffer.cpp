#include <service/api/BodyBuffer.h>

#include <service/api/ServiceContext.h>
#include <service/storage/FileSync.h>

#include <QFile>
#include <QUuid>

#include <utility>

namespace service {

BodyBuffer::BodyBuffer(ServiceContext &context) : m_context(context) {}

BodyBuffer::~BodyBuffer()
{
    clear();
}

void BodyBuffer::append(const char *data, qint64 length)
{
    if (!m_file) {
        m_held += length;
        if ((m_context.heldBodyBytes += length) > MaxHeldBytes)
            moveToFile();
    }
    if (m_file)
        m_file->writeAt(m_size, data, length);
    else
        m_bytes.append(data, static_cast<int>(length));
    m_size += length;
}

void BodyBuffer::moveToFile()
{
    const QString path = m_context.contents.temporaryPath() + QLatin1Char('/')
        + QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_file = std::make_unique<RawFile>(path, RawFile::Mode::CreateNew);
    QFile::remove(path); // its content exists as long as it is open
    m_file->writeAt(0, m_bytes.constData(), m_bytes.size());
    m_bytes = QByteArray();
    m_context.heldBodyBytes -= std::exchange(m_held, 0);
}

QByteArray BodyBuffer::take()
{
    QByteArray bytes = std::exchange(m_bytes, QByteArray());
    if (m_file) {
        bytes.resize(static_cast<int>(m_size));
        if (m_file->readAt(0, bytes.data(), m_size) != m_size)
            throw StorageError(QStringLiteral("reading a request's body"), EIO);
    }
    clear();
    return bytes;
}

void BodyBuffer::clear()
{
    m_context.heldBodyBytes -= std::exchange(m_held, 0);
    m_file.reset();
    m_size = 0;
}

} // namespace service
