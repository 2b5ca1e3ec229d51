#pragma once

#include <operations/VellOperation.h>

#include <QPointer>

//! Ends \a request, so that \a receiver hears nothing of it any more.
inline void dropRequest(QPointer<VellOperation> &request, QObject *receiver)
{
    if (!request)
        return;
    QObject::disconnect(request, nullptr, receiver, nullptr);
    if (!request->isEnded()) // else it is calling, and deletes itself
        delete request;
    request = nullptr;
}
