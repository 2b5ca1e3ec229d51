#pragma once

#include <operations/VellOperation.h>

#include <QPointer>

//! Ends \a request, so that \a receiver gets no more signals of it.
inline void dropRequest(QPointer<VellOperation> &request, QObject *receiver)
{
    if (!request)
        return;
    QObject::disconnect(request, nullptr, receiver, nullptr);
    if (!request->isEnded()) // otherwise it is emitting its signal, and deletes itself
        delete request;
    request = nullptr;
}
