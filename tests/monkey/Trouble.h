#pragma once

#include "Dice.h"
#include "MonkeyWorld.h"

#include <QTimer>

//! \brief What goes wrong around the program: the service, the network, the store and the rights.
class Trouble
{
public:
    explicit Trouble(MonkeyWorld *world);

    //! Makes trouble. \return what
    QString make(Dice *dice);

    //! Ends all of it.
    void end();

private:
    QString killService(Dice *dice);
    QString cutNetwork(Dice *dice) const;
    QString takeRight(Dice *dice);

    MonkeyWorld *const m_world;
    QTimer m_startingService;
    QTimer m_givingRight;
    QStringList m_arguments;
};
