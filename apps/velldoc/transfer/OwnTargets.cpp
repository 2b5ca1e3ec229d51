#include <velldoc/transfer/OwnTargets.h>

#include <velldoc/program/Context.h>

#include <QCryptographicHash>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace velldoc {

namespace {

QString filePath()
{
    return QFileInfo(Settings::configPath()).path() + QStringLiteral("/targets.ini");
}

} // namespace

OwnTargets::OwnTargets(const Context &context, const QStringList &words)
{
    const QStringList parts = QStringList{context.settings.url, context.settings.dataDir,
                                          context.settings.project, QDir::currentPath()}
        + words;
    m_key = QString::fromLatin1(
        QCryptographicHash::hash(parts.join(QChar::Null).toUtf8(), QCryptographicHash::Md5)
            .toHex());
}

bool OwnTargets::hasMade(const QString &id) const
{
    const QSettings file(filePath(), QSettings::IniFormat);
    const QString known = file.value(m_key + QLatin1String("/id")).toString();
    return file.contains(m_key + QLatin1String("/date")) && (known.isEmpty() || known == id);
}

void OwnTargets::noteMade(const QString &id) const
{
    constexpr int MostDays = 90;
    const QDate today = QDate::currentDate();
    QDir().mkpath(QFileInfo(filePath()).path());
    QSettings file(filePath(), QSettings::IniFormat);
    const QStringList keys = file.childGroups();
    for (const QString &key : keys) {
        const QDate date = file.value(key + QLatin1String("/date")).toDate();
        if (date.daysTo(today) > MostDays)
            file.remove(key);
    }
    file.setValue(m_key + QLatin1String("/date"), today.toString(Qt::ISODate));
    file.setValue(m_key + QLatin1String("/id"), id);
}

} // namespace velldoc
