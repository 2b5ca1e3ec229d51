#pragma once

#include <QFrame>

namespace desktop {

class Actions;

//! \brief The first three steps, for new users.
class FirstSteps : public QFrame
{
    Q_OBJECT

public:
    //! \param actions must outlive this object
    explicit FirstSteps(Actions *actions, QWidget *parent = nullptr);

Q_SIGNALS:
    //! The user has closed it.
    void closed();
};

} // namespace desktop
