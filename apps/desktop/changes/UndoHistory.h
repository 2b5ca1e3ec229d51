#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace desktop {

//! \brief The last changes, each with a function that reverts it.
class UndoHistory
{
public:
    //! \param text the text of the change for the menu: "Rename “plan.dwg”"
    void add(const QString &text, std::function<void()> undo);

    bool isEmpty() const { return m_steps.empty(); }
    //! Returns the text of the last change; empty if there is none.
    QString text() const;

    //! Reverts the last change and removes it from the history.
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
