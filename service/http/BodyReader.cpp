#include <service/http/BodyReader.h>

#include <service/http/HttpMessages.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace service {

BodyReader::BodyReader(Source source, qint64 length) : m_source(std::move(source)), m_length(length)
{}

qint64 BodyReader::read(char *data, qint64 maxLength)
{
    qint64 wanted = std::min(maxLength, remaining());
    if (m_dropAfter >= 0) {
        if (m_read >= m_dropAfter)
            throw ConnectionLost();
        wanted = std::min(wanted, m_dropAfter - m_read);
    }
    if (wanted <= 0)
        return 0;
    const qint64 count = m_source(data, wanted);
    if (count <= 0)
        throw ConnectionLost();
    m_read += count;
    return count;
}

QByteArray BodyReader::readAll(qint64 limitBytes)
{
    if (remaining() > limitBytes) {
        throw HttpError(
            413, QStringLiteral("The body is larger than the %1 bytes allowed.").arg(limitBytes));
    }
    QByteArray all(static_cast<int>(remaining()), Qt::Uninitialized);
    for (int filled = 0; filled < all.size();)
        filled += static_cast<int>(read(all.data() + filled, all.size() - filled));
    return all;
}

bool BodyReader::drain(qint64 limitBytes)
{
    if (remaining() > limitBytes)
        return false;
    std::vector<char> block(size_t(64) * 1024);
    while (remaining() > 0)
        read(block.data(), static_cast<qint64>(block.size()));
    return true;
}

} // namespace service
