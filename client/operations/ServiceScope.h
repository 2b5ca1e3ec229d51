#pragma once

#include <VellNetwork/RequestContext.h>

#include <QString>

//! \brief The connection, the project and the user of an operation or a transfer, fixed when it is created.
struct ServiceScope
{
    RequestSettings settings;
    QString projectId;
    QString userId;
};
