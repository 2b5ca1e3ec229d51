#pragma once

#include <desktop/signin/SavedConnection.h>

#include <embedded_service/EmbeddedService.h>
#include <session/VellSession.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace desktop {

//! \brief Brings the session to a service and a project: the program's own service, or one with an address.
//!
//! Each open() or openOwn() ends with exactly one of opened(), projectNeeded() and failed(). Belongs to the thread of the session.
class Connector : public QObject
{
    Q_OBJECT

public:
    //! \param session must outlive this
    //! \param ownDataDir the data folder of the program's own service
    Connector(VellSession *session, const QString &ownDataDir, QObject *parent = nullptr);

    //! Connects with \a connection. The project is the one that it names, or the only one of the user.
    void open(const SavedConnection &connection);

    //! Starts the program's own service, or uses that of another program on the same data, and connects to it.
    //! \param earlierAddress where it listened before, which is taken again if it is free: transfers that wait for it go on then
    void openOwn(const QString &earlierAddress = {});

    //! Opens the project \a id of the user after projectNeeded(). opened() follows.
    void chooseProject(const QString &id);

    //! The connection that is open, or was tried last.
    const SavedConnection &connection() const { return m_connection; }

    VellSession *session() const { return m_session; }

Q_SIGNALS:
    void opened(const desktop::SavedConnection &connection);
    //! Connected; the user has several projects, and none of them was named.
    void projectNeeded();
    void failed(const VellError &error);

private:
    void startOwn();
    EmbeddedService::Outcome tryOwn();
    void chooseProjectOfUser();

    VellSession *const m_session;
    const QString m_ownDataDir;
    EmbeddedService m_own;
    SavedConnection m_connection;
    QString m_wantedListenAddress; // HOST:PORT of the own service
    QElapsedTimer m_waiting; // for the data folder of the own service
    QTimer m_retry;
};

} // namespace desktop
