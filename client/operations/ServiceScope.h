#pragma once

#include <VellNetwork/RequestContext.h>

#include <QString>

//! \brief For whom requests are made: fixed when an operation or a transfer is made.
struct ServiceScope
{
    RequestSettings settings;
    QString projectId;
    QString userId;
};
