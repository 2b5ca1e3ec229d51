#include <desktop/signin/Connector.h>

#include <QUrl>

#include <algorithm>

namespace desktop {

namespace {

constexpr int WaitForFolderMs = 5000;
constexpr int RetryMs = 200;

} // namespace

Connector::Connector(VellSession *session, const QString &ownDataDir, QObject *parent)
    : QObject(parent), m_session(session), m_ownDataDir(ownDataDir)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(RetryMs);
    connect(&m_retry, &QTimer::timeout, this, &Connector::startOwn);
    connect(session, &VellSession::opened, this, &Connector::chooseProjectOfUser);
    connect(session, &VellSession::openFailed, this, &Connector::failed);
}

void Connector::open(const SavedConnection &connection)
{
    if (connection.isOwn) {
        openOwn(connection.address);
        return;
    }
    m_retry.stop();
    m_connection = connection;
    m_session->open(connection.connection());
}

void Connector::openOwn(const QString &earlierAddress)
{
    m_wantedListenAddress = QUrl(earlierAddress).authority();
    m_connection = SavedConnection();
    m_connection.isOwn = true;
    m_connection.projectId = QStringLiteral("default");
    m_waiting.start();
    startOwn();
}

EmbeddedService::Outcome Connector::tryOwn()
{
    if (m_own.isRunning())
        return EmbeddedService::Outcome::Started;
    const auto outcome = m_own.start(m_ownDataDir, m_wantedListenAddress);
    const bool isPortTaken =
        outcome == EmbeddedService::Outcome::Failed && !m_wantedListenAddress.isEmpty();
    return isPortTaken ? m_own.start(m_ownDataDir) : outcome;
}

void Connector::startOwn()
{
    using Outcome = EmbeddedService::Outcome;
    switch (tryOwn()) {
    case Outcome::Started:
        m_own.announce(); // for other programs with the same data folder
        Q_FALLTHROUGH();
    case Outcome::Shared:
        m_connection.address = m_own.address();
        m_session->open(m_connection.connection());
        return;
    case Outcome::InUse:
        if (!m_waiting.hasExpired(WaitForFolderMs)) {
            m_retry.start();
            return;
        }
        Q_EMIT failed(VellError::of(VellError::Kind::Busy,
                                    tr("Another program is using the documents of this computer. "
                                       "Try again when it has finished."),
                                    m_ownDataDir));
        return;
    case Outcome::Missing:
        Q_EMIT failed(VellError::of(
            VellError::Kind::BadAddress,
            tr("This program was built without a service. Enter the address of a service.")));
        return;
    case Outcome::BadAddress:
    case Outcome::Failed:
        Q_EMIT failed(VellError::of(VellError::Kind::ServiceFailed,
                                    tr("The service of this computer could not be started."),
                                    m_own.error()));
        return;
    }
}

void Connector::chooseProjectOfUser()
{
    const QList<VellProject> projects = m_session->user().projects;
    const auto isNamed = [this](const VellProject &p) { return p.id == m_connection.projectId; };
    const bool isKnown = std::any_of(projects.begin(), projects.end(), isNamed);
    if (projects.isEmpty() || isKnown) {
        // A service without users creates a project with its first document.
        chooseProject(m_connection.projectId.isEmpty() ? QStringLiteral("default")
                                                       : m_connection.projectId);
    } else if (m_connection.isOwn) {
        chooseProject(m_connection.projectId);
    } else if (projects.size() == 1) {
        chooseProject(projects.constFirst().id);
    } else {
        Q_EMIT projectNeeded();
    }
}

void Connector::chooseProject(const QString &id)
{
    m_connection.projectId = id;
    m_connection.projectName.clear();
    const QList<VellProject> projects = m_session->user().projects;
    for (const VellProject &project : projects) {
        if (project.id == id)
            m_connection.projectName = project.name;
    }
    m_connection.userName = m_session->user().name;
    m_session->openProject(id);
    Q_EMIT opened(m_connection);
}

} // namespace desktop
