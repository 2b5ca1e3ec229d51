#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace desktop {

//! \brief The latest changes, each with what takes it back.
class UndoHistory
{
public:
    //! \param text what is undone, for the menu: "Rename “plan.dwg”"
    void add(const QString &text, std::function<void()> undo);

    bool isEmpty() const { return m_steps.empty(); }
    //! Of the latest change; empty if there is none.
    QString text() const;

    //! Forgets the latest change and takes it back.
    void undo();
    void clear() { m_steps.clear(); }

private:
    struct Step
    {
        QString text;
        std::function<void()> undo;
    };

    std::vector<Step> m_steps;
};

} // namespace desktop
