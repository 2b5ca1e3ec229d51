#pragma once

#include <service/faults/FaultRule.h>

#include <mutex>
#include <optional>
#include <vector>

namespace service {

//! \brief The active fault rules, and how often each has matched. Thread-safe.
class FaultPlan
{
public:
    void add(const FaultRule &rule);
    void clear();

    //! Counts the request and returns the rule that applies to it.
    std::optional<FaultRule> strike(const QByteArray &method, const QString &path);

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
