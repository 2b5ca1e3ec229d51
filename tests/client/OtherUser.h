#pragma once

#include "ClientWorld.h"

//! \brief A second session on the service of a world, with the same project open.
class OtherUser
{
public:
    explicit OtherUser(const ClientWorld &world) : documents(&session)
    {
        const QSignalSpy opened(&session, &VellSession::opened);
        session.open(world.connection());
        if (!QTest::qWaitFor([&opened] { return !opened.isEmpty(); }, WaitMs))
            qFatal("the second session does not open");
        session.openProject(world.session.projectId());
    }

    VellSession session;
    VellDocuments documents;
};
