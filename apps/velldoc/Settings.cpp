#include <velldoc/Settings.h>

#include <velldoc/Failure.h>
#include <velldoc/Text.h>
#include <velldoc/output/Terminal.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace velldoc {

namespace {

struct Value
{
    QString Settings::*member;
    const char *key;
    const char *variable;
};

constexpr Value Values[] = {
    {&Settings::url, "url", "VELLDOC_URL"},
    {&Settings::project, "project", "VELLDOC_PROJECT"},
    {&Settings::token, "token", "VELLDOC_TOKEN"},
    {&Settings::dataDir, "data", "VELLDOC_DATA"},
};

} // namespace

Settings Settings::load()
{
    Settings settings;
    const QSettings file(configPath(), QSettings::IniFormat);
    for (const Value &value : Values) {
        settings.*value.member = qEnvironmentVariableIsEmpty(value.variable)
            ? file.value(QString::fromLatin1(value.key)).toString()
            : QString::fromUtf8(qgetenv(value.variable));
    }
    if (settings.project.isEmpty())
        settings.project = QStringLiteral("default");
    if (settings.dataDir.isEmpty()) {
        settings.dataDir = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QStringLiteral("/velldoc");
    }
    return settings;
}

void Settings::save() const
{
    const QString path = configPath();
    QDir().mkpath(QFileInfo(path).path());
    {
        QSettings file(path, QSettings::IniFormat);
        file.setAtomicSyncRequired(false);
        // Private before the token is in it: QSettings keeps the modes of a file that is there.
        file.setValue(QStringLiteral("url"), url);
        file.sync();
        if (!system_files::makePrivate(path))
            throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(path));
        file.setValue(QStringLiteral("project"), project);
        file.setValue(QStringLiteral("token"), token);
        file.sync();
        if (file.status() == QSettings::NoError)
            return;
    }
    throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(path));
}

bool Settings::forget()
{
    QSettings file(configPath(), QSettings::IniFormat);
    const bool isStored = file.contains(QStringLiteral("url"));
    for (const char *const key : {"url", "project", "token"})
        file.remove(QString::fromLatin1(key));
    return isStored;
}

QString Settings::configPath()
{
    if (!qEnvironmentVariableIsEmpty("VELLDOC_CONFIG"))
        return qEnvironmentVariable("VELLDOC_CONFIG");
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/velldoc/config.ini");
}

} // namespace velldoc
