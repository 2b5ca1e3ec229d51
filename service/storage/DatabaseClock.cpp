#include <service/storage/DatabaseClock.h>

#include <service/storage/Statement.h>

#include <QDateTime>

namespace service {

namespace {

constexpr std::chrono::seconds AskAgain{5};

} // namespace

qint64 DatabaseClock::nowMs(Database &database)
{
    const QString question = database.dialect().clockQuery();
    if (question.isEmpty())
        return QDateTime::currentMSecsSinceEpoch();
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        const auto age = Clock::now() - m_askedAt;
        if (m_answerMs > 0 && age < AskAgain)
            return m_answerMs + std::chrono::duration_cast<std::chrono::milliseconds>(age).count();
    }
    Statement answer(database, question);
    answer.next();
    const qint64 now = answer.number(0);
    const std::lock_guard<std::mutex> lock(m_lock);
    m_askedAt = Clock::now();
    m_answerMs = now;
    return now;
}

} // namespace service
