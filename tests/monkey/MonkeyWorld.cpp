#include "MonkeyWorld.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

using namespace desktop;

namespace {

const QString project = QStringLiteral("p1");
const QString user = QStringLiteral("anna");

} // namespace

MonkeyWorld::MonkeyWorld() : service(m_folder.filePath(QStringLiteral("data")))
{
    startService({});
    m_token = addUser(user, QStringLiteral("owner"));
    m_otherToken = addUser(QStringLiteral("ben"), QStringLiteral("owner"));
    proxy = std::make_unique<FaultyProxy>(service.port());
    proxy->setKeepingAnswers(false);
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openFile");
    QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "openFile");
}

MonkeyWorld::~MonkeyWorld()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
}

QString MonkeyWorld::runCommand(const QStringList &words) const
{
    QString output;
    const QStringList place{QStringLiteral("--data"), service.dataDir()};
    if (ServiceProcess::run(words + place, &output) != 0)
        qFatal("vell-service %s: %s", qPrintable(words.join(QLatin1Char(' '))), qPrintable(output));
    return output.trimmed();
}

QString MonkeyWorld::addUser(const QString &name, const QString &role) const
{
    const QString token = runCommand({QStringLiteral("user"), QStringLiteral("add"), name});
    if (name == user)
        runCommand({QStringLiteral("project"), QStringLiteral("add"), project});
    runCommand({QStringLiteral("role"), QStringLiteral("set"), project, name, role});
    return token.section(QLatin1Char('\n'), -1);
}

void MonkeyWorld::setRole(const QString &role) const
{
    runCommand({QStringLiteral("role"), QStringLiteral("set"), project, user, role});
}

void MonkeyWorld::startProgram()
{
    StartOptions options;
    options.paths = AppPaths::below(m_folder.filePath(QStringLiteral("home")));
    SavedConnection connection;
    connection.address = proxy->baseApi();
    connection.projectId = project;
    connection.token = m_token;
    connection.proxy = QStringLiteral("none");
    options.connection = connection;
    m_program = std::make_unique<Desktop>(options);
    m_program->start();
    ledger.follow(&workspace().documents);
    ledger.follow(&workspace().queue);
}

void MonkeyWorld::endProgram()
{
    window()->close();
    m_program.reset();
}

QString MonkeyWorld::keepFiles()
{
    m_folder.setAutoRemove(false);
    return m_folder.path();
}

void MonkeyWorld::startService(const QStringList &arguments)
{
    const QStringList log{QStringLiteral("--access-log"),
                          m_folder.filePath(QStringLiteral("access.log"))};
    if (!service.start(log + arguments))
        qFatal("the service does not start");
}

QString MonkeyWorld::newFile(const QString &name, int fillBytes)
{
    const QString path = newFolder() + QLatin1Char('/') + name;
    change(path, fillBytes);
    return path;
}

QString MonkeyWorld::newFolder()
{
    const QString path = m_folder.filePath(QStringLiteral("local/%1").arg(++m_fileCount));
    if (!QDir().mkpath(path))
        qFatal("%s cannot be made", qPrintable(path));
    return path;
}

QString MonkeyWorld::commonFolder() const
{
    const QString path = m_folder.filePath(QStringLiteral("common"));
    QDir().mkpath(path);
    return path;
}

void MonkeyWorld::change(const QString &path, int fillBytes)
{
    QFile file(path);
    const QByteArray content = ledger.newContent(QFileInfo(path).fileName(), fillBytes);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(path));
}

void MonkeyWorld::openFile(const QUrl &url)
{
    if (url.isLocalFile() && QFileInfo(url.toLocalFile()).isFile())
        m_opened.append(url.toLocalFile());
}
