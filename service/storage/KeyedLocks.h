#pragma once

#include <QString>

#include <map>
#include <memory>
#include <mutex>

namespace service {

//! \brief A lock for each key, there only while somebody holds or awaits it.
class KeyedLocks
{
public:
    //! Holds the lock of one key until it goes.
    class Holder
    {
    public:
        Holder(KeyedLocks &locks, const QString &key)
            : m_locks(locks), m_key(key), m_mutex(locks.acquire(key)), m_guard(*m_mutex)
        {}
        ~Holder()
        {
            m_guard.unlock();
            m_locks.release(m_key);
        }
        Holder(const Holder &) = delete;
        Holder &operator=(const Holder &) = delete;

    private:
        KeyedLocks &m_locks;
        QString m_key;
        std::shared_ptr<std::mutex> m_mutex;
        std::unique_lock<std::mutex> m_guard;
    };

private:
    struct Entry
    {
        std::shared_ptr<std::mutex> mutex = std::make_shared<std::mutex>();
        int users = 0;
    };

    std::shared_ptr<std::mutex> acquire(const QString &key)
    {
        const std::lock_guard<std::mutex> guard(m_guard);
        Entry &entry = m_entries[key];
        ++entry.users;
        return entry.mutex;
    }

    void release(const QString &key)
    {
        const std::lock_guard<std::mutex> guard(m_guard);
        const auto found = m_entries.find(key);
        if (--found->second.users == 0)
            m_entries.erase(found);
    }

    std::mutex m_guard;
    std::map<QString, Entry> m_entries;
};

} // namespace service
