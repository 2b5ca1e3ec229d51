#include <velldoc/session/Settings.h>

#include <velldoc/program/Failure.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace velldoc {

const QVector<Settings::Value> Settings::values{
    {&Settings::url, "url", "VELLDOC_URL", "url", false, true},
    {&Settings::project, "project", "VELLDOC_PROJECT", "project", false, true},
    {&Settings::token, "token", "VELLDOC_TOKEN", "token", false, true},
    {&Settings::caCertificates, "cacert", "VELLDOC_CACERT", "cacert", true, true},
    {&Settings::certificate, "cert", "VELLDOC_CERT", "cert", true, true},
    {&Settings::key, "key", "VELLDOC_KEY", "key", true, true},
    {&Settings::keyPassword, nullptr, "VELLDOC_KEY_PASSWORD", nullptr, false, false},
    {&Settings::proxy, "proxy", "VELLDOC_PROXY", "proxy", false, true},
    {&Settings::dataDir, "data", "VELLDOC_DATA", nullptr, false, false},
};

namespace {

//! Returns the key of the value \a key of \a profile in the file.
QString keyIn(const QString &profile, const QString &key)
{
    return profile.isEmpty() ? key : QLatin1String("profile-") + profile + QLatin1Char('/') + key;
}

QString keyIn(const QString &profile, const char *key)
{
    return keyIn(profile, QString::fromLatin1(key));
}

//! Makes the file readable only for its owner before a secret is written: QSettings keeps the permissions of an existing file.
void makePrivate(QSettings &file)
{
    const QString path = file.fileName();
    QDir().mkpath(QFileInfo(path).path());
    file.setAtomicSyncRequired(false);
    if (!QFile(path).open(QIODevice::Append) || !system_files::makePrivate(path))
        throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(path));
}

void sync(QSettings &file)
{
    file.sync();
    if (file.status() != QSettings::NoError)
        throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(file.fileName()));
}

} // namespace

Settings Settings::load(const QString &profile)
{
    Settings settings;
    const QSettings file(configPath(), QSettings::IniFormat);
    settings.profile = profile.isEmpty() ? qEnvironmentVariable("VELLDOC_PROFILE") : profile;
    for (const Value &value : values) {
        if (!qEnvironmentVariableIsEmpty(value.variable))
            settings.*value.member = QString::fromUtf8(qgetenv(value.variable));
        else if (value.key)
            settings.*value.member = file.value(keyIn(settings.profile, value.key)).toString();
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
    QSettings file(configPath(), QSettings::IniFormat);
    makePrivate(file);
    for (const Value &value : values) {
        const QString text = this->*value.member;
        if (!value.isLogin)
            continue;
        if (text.isEmpty() && value.isFile)
            file.remove(keyIn(profile, value.key));
        else
            file.setValue(keyIn(profile, value.key),
                          value.isFile && QFileInfo::exists(text)
                              ? QFileInfo(text).absoluteFilePath()
                              : text);
    }
    sync(file);
}

bool Settings::forget(const QString &profile)
{
    QSettings file(configPath(), QSettings::IniFormat);
    const bool isStored = file.contains(keyIn(profile, "url"));
    for (const Value &value : values) {
        if (value.isLogin)
            file.remove(keyIn(profile, value.key));
    }
    return isStored;
}

void Settings::write(const QString &profile, const QString &key, const QString &text)
{
    QSettings file(configPath(), QSettings::IniFormat);
    makePrivate(file);
    if (text.isEmpty())
        file.remove(keyIn(profile, key));
    else
        file.setValue(keyIn(profile, key), text);
    sync(file);
}

QStringList Settings::profiles()
{
    const QSettings file(configPath(), QSettings::IniFormat);
    QStringList names;
    if (file.contains(QStringLiteral("url")))
        names.append(QString());
    const QStringList groups = file.childGroups();
    for (const QString &group : groups) {
        if (group.startsWith(QLatin1String("profile-")))
            names.append(group.section(QLatin1Char('-'), 1));
    }
    return names;
}

QString Settings::configPath()
{
    if (!qEnvironmentVariableIsEmpty("VELLDOC_CONFIG"))
        return qEnvironmentVariable("VELLDOC_CONFIG");
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/velldoc/config.ini");
}

} // namespace velldoc
