#pragma once

#include "ClientRun.h"
#include "LocalFile.h"

#include <support/FaultyProxy.h>
#include <support/HttpClient.h>
#include <support/ServiceProcess.h>

#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

//! \brief A service in a process of its own, and a proxy before it through which the clients go.
class ProxyWorld
{
public:
    //! \param arguments more for the service's command line
    explicit ProxyWorld(const QStringList &arguments = {});

    bool isStarted() const { return proxy != nullptr; }

    //! Forgets what has passed.
    void renewProxy();

    LocalFile makeFile(qint64 bytes, quint32 salt, const QString &name = "a.bin") const;

    //! Starts an upload of \a file through the proxy.
    std::unique_ptr<ClientRun> upload(const LocalFile &file,
                                      const QStringList &arguments = {}) const;

    //! The service's record of an upload; empty without one.
    QJsonObject record(const QByteArray &md5);
    int savedChunks(const QByteArray &md5);

    //! The identifier of the stored file with that MD5; empty when the service has none.
    QString storedFile(const QByteArray &md5);

    //! The content of a stored file, asked from the service.
    QByteArray download(const QString &fileId);

    //! How many documents hold something.
    int documentCount();

    //! The stored contents whose bytes are not those of their name, which is an MD5.
    QStringList wrongContents() const;

    QTemporaryDir folder;
    ServiceProcess service;
    std::unique_ptr<FaultyProxy> proxy;
    HttpClient http;
};
