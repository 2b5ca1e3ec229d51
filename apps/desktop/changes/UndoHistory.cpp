#include <desktop/changes/UndoHistory.h>

#include <utility>

namespace desktop {

namespace {

constexpr std::size_t MostSteps = 100;

} // namespace

void UndoHistory::add(const QString &text, std::function<void()> undo)
{
    if (m_steps.size() == MostSteps)
        m_steps.erase(m_steps.begin());
    m_steps.push_back({text, std::move(undo)});
}

QString UndoHistory::text() const
{
    return m_steps.empty() ? QString() : m_steps.back().text;
}

void UndoHistory::undo()
{
    if (m_steps.empty())
        return;
    const Step step = std::move(m_steps.back());
    m_steps.pop_back();
    step.undo();
}

} // namespace desktop
