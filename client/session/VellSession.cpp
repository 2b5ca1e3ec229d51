#include <session/VellSession.h>

#include <session/SessionAccess.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

constexpr int NotFound = 404;
constexpr int FirstProbeMs = 1000;
constexpr int LongestProbeMs = 30000;

class SessionText
{
    Q_DECLARE_TR_FUNCTIONS(VellSession)

public:
    static QString noService(const QString &address)
    {
        return tr("There is no document service at %1.").arg(address);
    }
};

VellUser userFrom(const QJsonObject &json)
{
    VellUser user;
    user.id = json.value(QLatin1String("_id")).toString();
    user.name = json.value(QLatin1String("name")).toString();
    const QJsonArray projects = json.value(QLatin1String("projects")).toArray();
    for (const QJsonValue &value : projects) {
        const QJsonObject project = value.toObject();
        user.projects.append({project.value(QLatin1String("_id")).toString(),
                              project.value(QLatin1String("name")).toString(),
                              project.value(QLatin1String("role")).toString()});
    }
    return user;
}

//! Requests the signed-in user. \throws OperationFailure
VellUser requestUser(OperationRun &run)
{
    NetworkEventLoop loop(
        NetworkManager::instance()->get(run.address(QStringLiteral("base-service/me"))));
    loop.exec();
    run.checkAborted();
    const QJsonObject json = loop.object();
    // A service without users has no such route.
    if (loop.httpStatus() == NotFound && !json.isEmpty())
        return {};
    const VellUser user = userFrom(json);
    if (loop.httpStatus() == NotFound || (loop.isSuccessful() && user.id.isEmpty())) {
        throw OperationFailure{VellError::of(VellError::Kind::BadAddress,
                                             SessionText::noService(run.address(QString())))};
    }
    run.throwFailure();
    return user;
}

bool isSame(const VellUser &a, const VellUser &b)
{
    return a.id == b.id && a.name == b.name
        && std::equal(a.projects.begin(), a.projects.end(), b.projects.begin(), b.projects.end(),
                      [](const VellProject &x, const VellProject &y) {
                          return x.id == y.id && x.name == y.name && x.role == y.role;
                      });
}

} // namespace

VellSession::VellSession(QObject *parent)
    : QObject(parent), m_lanes(std::make_unique<OperationLanes>())
{
    qRegisterMetaType<VellError>();
    m_probe.setSingleShot(true);
    connect(&m_probe, &QTimer::timeout, this, &VellSession::probe);
}

VellSession::~VellSession()
{
    // Before the lanes are destroyed, which wait for running operations.
    qDeleteAll(findChildren<VellOperation *>());
}

void VellSession::open(const VellConnection &connection)
{
    close();
    m_connection = connection;
    setState(State::Connecting);
    const auto refuse = [this](const VellError &error) {
        close();
        Q_EMIT openFailed(error);
    };
    if (const VellError problem = connection.problem()) {
        m_opening = new QObject(this);
        QMetaObject::invokeMethod(
            m_opening, [refuse, problem] { refuse(problem); }, Qt::QueuedConnection);
        return;
    }
    m_opening = SessionAccess::start<VellUser>(this, OperationLanes::Lane::Short, &requestUser)
                    ->then(
                        this,
                        [this](const VellUser &user) {
                            m_opening = nullptr;
                            m_user = user;
                            setState(State::Online);
                            Q_EMIT opened();
                        },
                        refuse);
}

void VellSession::close()
{
    delete m_opening;
    const auto operations = findChildren<VellOperation *>();
    for (VellOperation *const operation : operations)
        operation->abort();
    m_probe.stop();
    m_connection = {};
    m_user = {};
    m_userNames.clear();
    m_namesOf.clear();
    openProject(QString());
    setState(State::Closed);
}

void VellSession::openProject(const QString &id)
{
    if (id == m_projectId)
        return;
    m_projectId = id;
    Q_EMIT projectChanged(id);
}

void VellSession::refreshUser()
{
    SessionAccess::start<VellUser>(this, OperationLanes::Lane::Short, &requestUser)
        ->then(this, [this](const VellUser &user) {
            if (isSame(user, m_user))
                return;
            m_user = user;
            Q_EMIT userChanged();
        });
}

QString VellSession::userName(const QString &id)
{
    if (id == m_user.id && !m_user.name.isEmpty())
        return m_user.name;
    askForNames();
    return m_userNames.value(id, id);
}

QStringList VellSession::userIds(const QString &name) const
{
    QStringList ids;
    const auto matches = [&name](const QString &text) {
        return text.compare(name, Qt::CaseInsensitive) == 0;
    };
    if (matches(m_user.name) || matches(m_user.id))
        ids.append(m_user.id);
    for (auto user = m_userNames.cbegin(); user != m_userNames.cend(); ++user) {
        if ((matches(user.value()) || matches(user.key())) && !ids.contains(user.key()))
            ids.append(user.key());
    }
    return ids;
}

void VellSession::askForNames()
{
    if (m_projectId.isEmpty() || m_namesOf == m_projectId)
        return;
    m_namesOf = m_projectId;
    loadUserNames();
}

VellResult<QHash<QString, QString>> *VellSession::loadUserNames()
{
    const QString path =
        QStringLiteral("document-service/projects/") + m_projectId + QStringLiteral("/users");
    return SessionAccess::start<QHash<QString, QString>>(
        this, OperationLanes::Lane::Short,
        [path](OperationRun &run) {
            return run.query([&] {
                QHash<QString, QString> names;
                NetworkEventLoop loop(NetworkManager::instance()->get(run.address(path)));
                loop.exec();
                const QList<QJsonObject> users = loop.objectList();
                for (const QJsonObject &json : users) {
                    const VellUser user = userFrom(json);
                    if (!user.id.isEmpty() && !user.name.isEmpty())
                        names.insert(user.id, user.name);
                }
                return names;
            });
        },
        [this](const QHash<QString, QString> &names) {
            if (names == m_userNames)
                return;
            m_userNames = names;
            Q_EMIT userNamesChanged();
        });
}

ServiceScope VellSession::scope() const
{
    return {m_connection.requestSettings(), m_projectId, m_user.id};
}

void VellSession::start(VellOperation *operation, int lane)
{
    connect(operation, &VellOperation::finished, this, [this] { noteOutcome({}); });
    connect(operation, &VellOperation::failed, this, &VellSession::noteOutcome);
    m_lanes->start(operation, OperationLanes::Lane(lane), scope());
}

void VellSession::noteOutcome(const VellError &error)
{
    if (m_state == State::Closed || m_state == State::Connecting
        || error.kind == VellError::Kind::Cancelled)
        return;
    const bool isLost =
        error.kind == VellError::Kind::Offline || error.kind == VellError::Kind::TimedOut;
    if (!isLost) {
        if (m_state == State::Offline && m_userNames.isEmpty())
            m_namesOf.clear(); // the request has failed
        m_probe.stop();
        setState(State::Online);
    } else if (m_state == State::Online) {
        setState(State::Offline);
        m_probe.start(FirstProbeMs);
    } else if (!m_probe.isActive()) {
        m_probe.start(std::min(m_probe.interval() * 2, LongestProbeMs));
    }
}

void VellSession::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    Q_EMIT stateChanged(state);
}

void VellSession::probe()
{
    refreshUser();
}
