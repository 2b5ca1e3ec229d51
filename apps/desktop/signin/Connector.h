#pragma once

#include <desktop/signin/SavedConnection.h>

#include <embedded_service/EmbeddedService.h>
#include <session/VellSession.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace desktop {

//! \brief Connects the session to a service and a project: to the embedded service, or to an address.
//!
//! After each open() or openOwn() exactly one of opened(), projectNeeded() and failed() is emitted. Belongs to the thread of the
//! session.
class Connector : public QObject
{
    Q_OBJECT

public:
    //! \param session must outlive this object
    //! \param ownDataDir the data folder of the embedded service
    Connector(VellSession *session, const QString &ownDataDir, QObject *parent = nullptr);

    //! Connects with \a connection. Opens its project, or the only project of the user.
    void open(const SavedConnection &connection);

    //! Starts the embedded service, or uses that of another program for the same data folder, and connects to it.
    //! \param earlierAddress the previous address, which is used again if it is free, so that transfers that wait for it continue
    void openOwn(const QString &earlierAddress = {});

    //! Opens the project \a id after projectNeeded(). opened() follows.
    void chooseProject(const QString &id);

    //! Returns the connection that is open, or was tried last.
    const SavedConnection &connection() const { return m_connection; }

    VellSession *session() const { return m_session; }

Q_SIGNALS:
    void opened(const desktop::SavedConnection &connection);
    //! The session is connected, but the user has several projects, and the connection names none.
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
    QString m_wantedListenAddress; // HOST:PORT of the embedded service
    QElapsedTimer m_waiting; // for the data folder of the embedded service
    QTimer m_retry;
};

} // namespace desktop
