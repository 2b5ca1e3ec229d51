#pragma once

#include <desktop/actions/ActionRules.h>

#include <QAction>
#include <QObject>

#include <array>

class QWidget;

namespace desktop {

//! \brief The actions of the main window: texts, keys, icons, and whether they are possible.
class Actions : public QObject
{
    Q_OBJECT

public:
    //! \param window gets the actions, so that their keys work in it; it owns this object
    //! \param pane gets those that are for the selection
    Actions(QWidget *window, QWidget *pane);

    QAction *at(ActionId id) const { return m_actions[std::size_t(id)]; }

    //! Enables what is possible. The tool tip of what is not says why.
    void update(const ActionState &state) const;

Q_SIGNALS:
    void triggered(desktop::ActionId id);

private:
    std::array<QAction *, ActionCount> m_actions{};
};

} // namespace desktop
