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

//! \brief A user's connection to a service, the base of everything that a client does there.
//!
//! \code
//! VellSession session;
//! session.open({QStringLiteral("https://documents.example.com/"), token});
//! connect(&session, &VellSession::opened, this, [&] { session.openProject(session.user().projects.first().id); });
//! connect(&session, &VellSession::openFailed, this, [](const VellError &error) { qWarning() << error.text; });
//! \endcode
//!
//! \par Independence
//! Any number of sessions may exist in a process, each with its own address, token, certificates and project; the
//! process-wide settings (VellBaseApi, NetworkSettings, GetSoftCache()) are neither read nor changed. Operations and transfers
//! keep the connection and the project that the session had when they were made.
//!
//! \par Threads
//! Belongs to the thread that made it, which must run an event loop, normally the user-interface thread. None of its
//! functions waits for the network or the disk, and none runs a nested event loop. The destructor aborts what is under way.
class VELLCLIENT_EXPORT VellSession : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Closed,
        Connecting, //!< open() has been called
        Online,
        Offline, //!< the service has stopped answering; the session looks for it and returns by itself
    };
    Q_ENUM(State)

    explicit VellSession(QObject *parent = nullptr);
    ~VellSession() override;

    //! Connects with \a connection and learns who the user is. Closes what was open before. opened() or openFailed() follows.
    void open(const VellConnection &connection);

    //! Aborts all operations and forgets connection, user and project.
    void close();

    State state() const { return m_state; }
    const VellConnection &connection() const { return m_connection; }

    //! The signed-in user with the projects; empty before opened().
    const VellUser &user() const { return m_user; }

    //! The name of the user \a id, or \a id as long as the service has not told it: userNamesChanged() follows then. A
    //! service that does not tell the names of other users leaves them as identifiers.
    QString userName(const QString &id);

    //! The users of the open project whose name or identifier is \a name, without regard to case. Looks at what is known.
    QStringList userIds(const QString &name) const;

    //! Asks for the names of the users of the open project: from then on userName() knows them.
    VellResult<QHash<QString, QString>> *loadUserNames();

    //! Asks for the user and the projects anew; userChanged() follows if they differ.
    void refreshUser();

    //! The project that operations made from now on speak of; empty until one is opened.
    QString projectId() const { return m_projectId; }

    //! Opens the project \a id, without a request. Operations and transfers under way keep theirs.
    void openProject(const QString &id);

Q_SIGNALS:
    void opened();

    //! open() did not succeed: offline, no document service, not signed in, and so on. The session is closed.
    void openFailed(const VellError &error);

    void stateChanged(VellSession::State state);
    void projectChanged(const QString &projectId);
    void userChanged();
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
