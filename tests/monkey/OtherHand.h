#pragma once

#include "Dice.h"
#include "MonkeyWorld.h"

#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

//! \brief A second user, who changes the same folders by the client layer, without a window and past the proxy.
class OtherHand
{
public:
    explicit OtherHand(MonkeyWorld *world);

    //! Changes something. \return what
    QString act(Dice *dice);

    VellDocuments *documents() { return &m_documents; }
    VellTransferQueue *queue() { return &m_queue; }
    bool isConnected() const { return m_session.state() == VellSession::State::Online; }

private:
    void look();
    VellDocument known(Dice *dice, bool isFolder) const;

    MonkeyWorld *const m_world;
    VellSession m_session;
    VellDocuments m_documents;
    VellTransferQueue m_queue;
    QList<VellDocument> m_known; // as the last look has found it
};
