#include "VelldocWorld.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

namespace {

constexpr int LongestRunMs = 110'000;

} // namespace

QJsonObject VelldocRun::json() const
{
    return QJsonDocument::fromJson(out.toUtf8()).object();
}

QJsonObject VelldocRun::result() const
{
    return json().value(QLatin1String("result")).toObject();
}

QStringList VelldocRun::lines() const
{
    return out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

VelldocWorld::VelldocWorld() : environment(QProcessEnvironment::systemEnvironment())
{
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        if (name.startsWith(QLatin1String("VELLDOC_")) || name.startsWith(QLatin1String("XDG_")))
            environment.remove(name);
    }
    environment.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
#ifdef Q_OS_WIN // which does not ask HOME
    environment.insert(QStringLiteral("VELLDOC_CONFIG"), configPath());
#endif
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    environment.remove(QStringLiteral("LANGUAGE"));
    restartService();
}

void VelldocWorld::restartService()
{
    ServiceOptions options;
    options.dataDir = path(QStringLiteral("service"));
    if (m_service)
        options.port = m_service->port(); // the same address for those who hold it
    m_service.reset();
    m_service = std::make_unique<ReferenceService>(options);
    QString error;
    if (!m_service->start(&error))
        qFatal("The service does not start: %s", qPrintable(error));
}

void VelldocWorld::slowDownChunks(int milliseconds)
{
    FaultRule slow;
    slow.kind = FaultRule::Kind::Slow;
    slow.value = milliseconds;
    slow.pathPrefix = QStringLiteral("/base-service/largefiles");
    slow.times = 0;
    m_service->addFault(slow);
}

VelldocRun VelldocWorld::run(const QStringList &arguments, const QByteArray &input)
{
    return runBare(QStringList{QStringLiteral("--url"), baseApi()} + arguments, input);
}

VelldocRun VelldocWorld::runBare(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder.path());
    process.start(program(), arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(LongestRunMs);
    VelldocRun run;
    run.bytes = process.readAllStandardOutput();
    run.out = QString::fromUtf8(run.bytes);
    run.error = QString::fromUtf8(process.readAllStandardError());
    if (ended && process.exitStatus() == QProcess::NormalExit) {
        run.exitCode = process.exitCode();
    } else {
        run.error += QStringLiteral("(no normal end: %1, exit code 0x%2)")
                         .arg(process.errorString())
                         .arg(static_cast<quint32>(process.exitCode()), 0, 16);
    }
    if (run.error.contains(QLatin1String("QCommandLineParser")))
        QTest::qFail(qPrintable(run.error), __FILE__, __LINE__);
    return run;
}

VelldocRun VelldocWorld::succeed(const QStringList &arguments, const QByteArray &input)
{
    VelldocRun result = run(arguments, input);
    if (result.exitCode != 0) {
        QTest::qFail(qPrintable(QStringLiteral("velldoc %1 returned %2: %3%4")
                                    .arg(arguments.join(QLatin1Char(' ')))
                                    .arg(result.exitCode)
                                    .arg(result.error, result.out)),
                     __FILE__, __LINE__);
    }
    return result;
}

QString VelldocWorld::configPath() const
{
    return path(QStringLiteral("home/.config/velldoc/config.ini"));
}

QString VelldocWorld::program()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/velldoc");
}

QString VelldocWorld::write(const QString &name, const QByteArray &content) const
{
    QString filePath = path(name);
    QDir().mkpath(QFileInfo(filePath).path());
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(filePath));
    return filePath;
}

QString VelldocWorld::writeUnequalBlocks(const QString &name, qint64 bytes) const
{
    constexpr qint64 StampInterval = 65'536;
    QString filePath = write(name, {});
    QFile file(filePath);
    if (!file.open(QIODevice::ReadWrite) || !file.resize(bytes))
        qFatal("%s cannot be written", qPrintable(filePath));
    // The holes between the stamps take no room on the disk.
    for (qint64 offset = 0; offset + 8 <= bytes; offset += StampInterval) {
        file.seek(offset);
        file.write(QByteArray::number(offset + 10'000'000));
    }
    return filePath;
}

QStringList VelldocWorld::words(const char *line)
{
    return QString::fromUtf8(line).split(QLatin1Char(' '));
}

QByteArray VelldocWorld::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QMap<QString, QByteArray> VelldocWorld::tree(const QString &path)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(path, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString entry = it.next();
        const QString name = QDir(path).relativeFilePath(entry);
        if (it.fileInfo().isDir())
            files.insert(name + QLatin1Char('/'), {});
        else
            files.insert(name, read(entry));
    }
    return files;
}
