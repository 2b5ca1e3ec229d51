#pragma once

#include <QFrame>

namespace desktop {

class Actions;

//! \brief The three things to do first, for people who start the program for the first time.
class FirstSteps : public QFrame
{
    Q_OBJECT

public:
    //! \param actions must outlive this
    explicit FirstSteps(Actions *actions, QWidget *parent = nullptr);

Q_SIGNALS:
    //! The user has closed it.
    void closed();
};

} // namespace desktop
