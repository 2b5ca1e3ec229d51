#include "Transfer.h"

#include "TransferEngine.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <utility>

bool TransferRequest::isSmallAndAwaited() const
{
    constexpr int MostBytes = 65536; // are sent at once
    return caller == Caller::Waits && streamedBytes < 0 && (!body || body->size() <= MostBytes);
}

QEvent::Type Transfer::newsType()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}

Transfer::Transfer(TransferRequest request, QObject *receiver)
    : m_request(std::move(request)), m_receiver(receiver)
{}

Transfer::News Transfer::take(qint64 maxDataBytes)
{
    bool isResumed = false;
    News news;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEventPosted = false;
        news.sentBytes = m_news.sentBytes;
        news.head = std::exchange(m_news.head, std::nullopt);
        news.data = takeData(maxDataBytes);
        if (m_suppliedBytes < m_request.streamedBytes)
            news.wantedBlocks = qMax(0, OutboxBlocks - int(m_outbox.size()));
        news.hasMoreData = !m_news.data.isEmpty();
        if (!news.hasMoreData)
            news.end = std::exchange(m_news.end, std::nullopt);
        // The receiver may be deleted before the end is reported.
        if (news.end)
            m_receiver = nullptr;
        if (!news.data.isEmpty())
            isResumed = std::exchange(m_isHeldBack, false);
    }
    if (isResumed)
        TransferEngine::instance().resume(this);
    return news;
}

QByteArray Transfer::takeData(qint64 maxBytes)
{
    const qint64 left = m_news.data.size() - m_dataOffset;
    if (left <= maxBytes) {
        m_news.data.remove(0, int(std::exchange(m_dataOffset, 0)));
        return std::exchange(m_news.data, {});
    }
    const QByteArray data = m_news.data.mid(int(m_dataOffset), int(maxBytes));
    m_dataOffset += maxBytes;
    // Not each time: if a client reads small pieces, the rest would be moved for each of them.
    if (m_dataOffset > left)
        m_news.data.remove(0, int(std::exchange(m_dataOffset, 0)));
    return data;
}

void Transfer::supply(const QByteArray &block)
{
    bool isResumed = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_outbox.push_back(block);
        m_suppliedBytes += block.size();
        isResumed = std::exchange(m_isStarved, false);
    }
    if (isResumed)
        TransferEngine::instance().resume(this);
}

void Transfer::detach()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_receiver = nullptr;
}

void Transfer::setSentBytes(qint64 bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_news.sentBytes == bytes)
        return;
    m_news.sentBytes = bytes;
    m_hasNews = true;
}

void Transfer::setHead(const ResponseHead &head)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_news.head = head;
    m_hasNews = true;
}

bool Transfer::addData(const char *data, qint64 size)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isHeldBack = m_news.data.size() - m_dataOffset >= InboxBytes;
    if (m_isHeldBack)
        return false;
    m_news.data.append(data, int(size));
    m_hasNews = true;
    return true;
}

qint64 Transfer::takeBody(char *data, qint64 maxSize)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    qint64 taken = 0;
    while (taken < maxSize && !m_outbox.empty()) {
        const QByteArray &block = m_outbox.front();
        const qint64 count = std::min(maxSize - taken, block.size() - m_outboxOffset);
        std::memcpy(data + taken, block.constData() + m_outboxOffset, size_t(count));
        taken += count;
        m_outboxOffset += count;
        if (m_outboxOffset == block.size()) {
            m_outbox.pop_front();
            m_outboxOffset = 0;
        }
    }
    m_isStarved = taken == 0 && maxSize > 0;
    if (m_suppliedBytes < m_request.streamedBytes && int(m_outbox.size()) < OutboxBlocks)
        m_hasNews = true;
    return taken;
}

void Transfer::setEnd(const TransferEnd &end)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_request.body.reset();
    m_news.end = end;
    m_hasNews = true;
}

void Transfer::announce()
{
    if (!m_hasNews.exchange(false, std::memory_order_relaxed))
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_receiver || m_isEventPosted)
        return;
    m_isEventPosted = true;
    QCoreApplication::postEvent(m_receiver, new QEvent(newsType()));
}
