#pragma once

#include <operations/VellOperation.h>
#include <session/VellConnection.h>
#include <session/VellUser.h>

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <memory>

class OperationLanes;
struct ServiceScope;

//! \brief The connection of a user to a service.
//!
//! \code
//! VellSession session;
//! session.open({QStringLiteral("https://documents.example.com/"), token});
//! connect(&session, &VellSession::opened, this, [&] { session.openProject(session.user().projects.first().id); });
//! connect(&session, &VellSession::openFailed, this, [](const VellError &error) { qWarning() << error.text; });
//! \endcode
//!
//! \par Several sessions
//! A process may have any number of sessions, each with its own address, token, certificates and project. The settings of the
//! process (VellBaseApi, NetworkSettings, GetSoftCache()) are neither read nor changed. Operations and transfers keep the
//! connection and the project that the session has when they are created.
//!
//! \par States
//! \code{.unparsed}
//! Closed --open()--> Connecting --user received: opened()--> Online
//!    ^                   |                                    |  ^
//!    |                   |             request fails with     |  | any response to a request,
//!    +-- openFailed() ---+             Offline or TimedOut    v  | also to one of the session itself
//!                                                            Offline
//!
//! open()   any state --> Closed --> Connecting
//! close()  any state --> Closed
//! \endcode
//! In the state Offline the session sends a request after 1 s, then at growing intervals of up to 30 s, until there is a response.
//!
//! \par Threads
//! Belongs to the thread that created it, which must run an event loop, normally the GUI thread. Its functions neither wait for the
//! network or the disk nor run a nested event loop. The destructor aborts all operations.
//!
//! \since 0.1
//! \sa VellDocuments, VellTransferQueue
class VELLCLIENT_EXPORT VellSession : public QObject
{
    Q_OBJECT

public:
    //! See \ref VellSession "States".
    enum class State {
        Closed,
        Connecting, //!< open() has been called
        Online,
        Offline, //!< the service cannot be reached; the session reconnects automatically
    };
    Q_ENUM(State)

    explicit VellSession(QObject *parent = nullptr);
    ~VellSession() override;

    //! Closes the session, connects to the service of \a connection, and requests the user. opened() or openFailed() follows.
    //! \sa VellConnection::problem()
    void open(const VellConnection &connection);

    //! Aborts all operations, and clears the connection, the user and the project.
    void close();

    //! Returns the state.
    //! \sa stateChanged()
    State state() const { return m_state; }

    //! Returns the connection of open(); default-constructed if the session is closed.
    const VellConnection &connection() const { return m_connection; }

    //! Returns the signed-in user with the projects; default-constructed before opened(), and for a service without users.
    //! \sa refreshUser()
    const VellUser &user() const { return m_user; }

    //! Returns the name of the user \a id, or \a id if the name is not known. The first call in a project requests the names;
    //! userNamesChanged() follows. Some services do not report the names of other users.
    QString userName(const QString &id);

    //! Returns the identifiers of the users of the open project whose name or identifier is \a name, case-insensitively. Contains
    //! only users whose names have been loaded.
    //! \sa loadUserNames()
    QStringList userIds(const QString &name) const;

    //! Requests the names of the users of the open project, by identifier, for userName() and userIds().
    VellResult<QHash<QString, QString>> *loadUserNames();

    //! Requests the user and the projects again. userChanged() follows if they have changed.
    void refreshUser();

    //! Returns the project for new operations and transfers; empty until a project is opened.
    QString projectId() const { return m_projectId; }

    //! Opens the project \a id, without a request. Operations and transfers that already exist keep their project.
    void openProject(const QString &id);

Q_SIGNALS:
    //! open() has succeeded.
    void opened();

    //! open() has failed: the service cannot be reached, the address is not that of a document service, the token is invalid, and
    //! so on. The session is closed.
    void openFailed(const VellError &error);

    //! Emitted when state() has changed.
    void stateChanged(VellSession::State state);

    //! Emitted when another project has been opened; \a projectId is empty if none is open.
    void projectChanged(const QString &projectId);

    //! Emitted when refreshUser() has found changes.
    void userChanged();

    //! Emitted when userName() may return other names.
    void userNamesChanged();

private:
    friend class SessionAccess;

    ServiceScope scope() const;
    void start(VellOperation *operation, int lane);
    void noteOutcome(const VellError &error);
    void setState(State state);
    void probe();
    void askForNames();

    VellConnection m_connection;
    VellUser m_user;
    QString m_projectId;
    State m_state = State::Closed;
    std::unique_ptr<OperationLanes> m_lanes;
    QPointer<QObject> m_opening; // what open() waits for
    QTimer m_probe;
    QHash<QString, QString> m_userNames;
    QString m_namesOf; // the project whose names have been asked for
};
