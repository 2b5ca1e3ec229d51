#include <velldoc/Settings.h>

#include <velldoc/Failure.h>
#include <velldoc/Text.h>
#include <velldoc/output/Terminal.h>

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

Settings Settings::load()
{
    Settings settings;
    const QSettings file(configPath(), QSettings::IniFormat);
    for (const Value &value : values) {
        if (!qEnvironmentVariableIsEmpty(value.variable))
            settings.*value.member = QString::fromUtf8(qgetenv(value.variable));
        else if (value.key)
            settings.*value.member = file.value(QString::fromLatin1(value.key)).toString();
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
        for (const Value &value : values) {
            const QString text = this->*value.member;
            if (!value.isLogin)
                continue;
            if (text.isEmpty() && value.isFile)
                file.remove(QString::fromLatin1(value.key));
            else
                file.setValue(QString::fromLatin1(value.key),
                              value.isFile && QFileInfo::exists(text)
                                  ? QFileInfo(text).absoluteFilePath()
                                  : text);
        }
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
    for (const Value &value : values) {
        if (value.isLogin)
            file.remove(QString::fromLatin1(value.key));
    }
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
