#pragma once

#include <service/api/Dispatcher.h>
#include <service/api/ServiceContext.h>
#include <service/http/HttpMessages.h>

#include <QCoreApplication>
#include <QTemporaryDir>

//! \brief The requests of the service without a connection, on a data folder that nothing waits for.
class ServiceCalls
{
public:
    ServiceCalls();

    //! The response to a request of the user "local". Ends the process for a failure of the service and for a response that
    //! is not JSON.
    service::HttpResponse call(const QByteArray &method, const QByteArray &target,
                               const QByteArray &body = {},
                               const QByteArray &contentType = "application/json");
    //! The id in the response to a request that must succeed.
    QByteArray make(const QByteArray &method, const QByteArray &target, const QByteArray &body);
    //! Removes all documents.
    void clear();

private:
    int m_argumentCount = 1;
    char m_name[8] = "fuzz";
    char *m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application;
    QTemporaryDir m_folder;
    service::ServiceContext m_context;
    service::Dispatcher m_dispatcher;
};
