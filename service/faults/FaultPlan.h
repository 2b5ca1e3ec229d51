#pragma once

#include <service/faults/FaultRule.h>

#include <mutex>
#include <optional>
#include <vector>

namespace service {

//! \brief The rules in force and how often each has been met. Callable from any thread.
class FaultPlan
{
public:
    void add(const FaultRule &rule);
    void clear();

    //! Counts the request and returns the rule that strikes it.
    std::optional<FaultRule> strike(const QByteArray &verb, const QString &path);

private:
    struct Entry
    {
        FaultRule rule;
        int met = 0;
    };

    std::mutex m_lock;
    std::vector<Entry> m_entries;
};

} // namespace service
