#pragma once

#include <desktop/actions/ActionRules.h>

#include <QAction>
#include <QObject>

#include <array>

class QWidget;

namespace desktop {

//! \brief The actions of the main window: texts, keys, icons and states.
class Actions : public QObject
{
    Q_OBJECT

public:
    //! \param window owns this object and has the actions, so that their keys work in the window
    //! \param pane has the actions for the selection
    Actions(QWidget *window, QWidget *pane);

    QAction *at(ActionId id) const { return m_actions[std::size_t(id)]; }

    //! Enables the possible actions. The tool tips of the others give the reason.
    void update(const ActionState &state) const;

Q_SIGNALS:
    void triggered(desktop::ActionId id);

private:
    std::array<QAction *, ActionCount> m_actions{};
};

} // namespace desktop
