#include <service/records/SweepLog.h>

#include <service/storage/DataFolder.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace service {

namespace {

const QString sweepsKey = QStringLiteral("sweeps");
const QString uploadsKey = QStringLiteral("abandonedUploads");
const QString contentsKey = QStringLiteral("unusedContents");
const QString strayKey = QStringLiteral("strayFiles");
const QString bytesKey = QStringLiteral("bytes");
const QString lastKey = QStringLiteral("lastMs");

qint64 number(const QJsonObject &object, const QString &key)
{
    return static_cast<qint64>(object.value(key).toDouble());
}

} // namespace

SweepLog SweepLog::read(const DataFolder &folder)
{
    SweepLog log;
    QFile file(folder.sweeps());
    if (!file.open(QIODevice::ReadOnly))
        return log;
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    log.sweeps = number(object, sweepsKey);
    log.total.abandonedUploads = static_cast<int>(number(object, uploadsKey));
    log.total.unusedContents = static_cast<int>(number(object, contentsKey));
    log.total.strayFiles = static_cast<int>(number(object, strayKey));
    log.total.bytes = number(object, bytesKey);
    log.lastMs = number(object, lastKey);
    return log;
}

void SweepLog::add(const DataFolder &folder, const SweepResult &result, qint64 nowMs)
{
    const SweepLog before = read(folder);
    const QJsonObject object{{sweepsKey, before.sweeps + 1},
                             {uploadsKey, before.total.abandonedUploads + result.abandonedUploads},
                             {contentsKey, before.total.unusedContents + result.unusedContents},
                             {strayKey, before.total.strayFiles + result.strayFiles},
                             {bytesKey, before.total.bytes + result.bytes},
                             {lastKey, nowMs}};
    QSaveFile file(folder.sweeps());
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(object).toJson(QJsonDocument::Compact));
        file.commit();
    }
}

} // namespace service
