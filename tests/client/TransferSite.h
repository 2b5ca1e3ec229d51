#pragma once

#include <support/HttpClient.h>
#include <support/ServiceProcess.h>

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

//! \brief A service and a client with a queue on the disk, each in a process of its own that can be killed.
class TransferSite
{
public:
    TransferSite();

    QString path(const QString &name) const { return m_folder.filePath(name); }

    //! Starts the client on the queue of the site.
    void startClient(const QStringList &arguments = {});
    void killClient();
    bool isClientRunning() const;
    //! Waits until the client has ended by itself. \return its exit code; -1 if it does not
    int waitForClient();
    //! Waits until the client that runs has printed a line that begins with \a text.
    bool waitForLine(const QByteArray &text);

    //! What all clients of the site have printed.
    QByteArrayList lines();

    //! The files below the local folder \a path, relative to it.
    static QStringList filesBelow(const QString &path);

    //! The documents below the folder \a id: path, and identifier of the content; folders end with "/" and have the identifier of the
    //! document. A name that is there twice is listed twice.
    QMultiMap<QString, QString> documentsBelow(const QString &id, const QString &prefix = {});
    QByteArray content(const QString &fileId);

private:
    void read();

    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_client;
    QByteArray m_output;
    int m_earlierBytes = 0; // of the clients before

public:
    ServiceProcess service;
};
