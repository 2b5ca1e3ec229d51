#include <service/faults/FaultPlan.h>

namespace service {

namespace {

bool fits(const FaultRule &rule, const QByteArray &method, const QString &path)
{
    return (rule.verb.isEmpty() || rule.verb == method) && path.startsWith(rule.pathPrefix);
}

bool strikes(const FaultRule &rule, int met)
{
    return met >= rule.nth && (rule.times == 0 || met < rule.nth + rule.times);
}

} // namespace

void FaultPlan::add(const FaultRule &rule)
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_entries.push_back({rule, 0});
}

void FaultPlan::clear()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_entries.clear();
}

std::optional<FaultRule> FaultPlan::strike(const QByteArray &method, const QString &path)
{
    const std::lock_guard<std::mutex> lock(m_lock);
    for (Entry &entry : m_entries) {
        if (fits(entry.rule, method, path) && strikes(entry.rule, ++entry.met))
            return entry.rule;
    }
    return std::nullopt;
}

} // namespace service
