#include <velldoc/output/Log.h>

#include <velldoc/program/Failure.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>

#include <mutex>

namespace velldoc {

namespace {

struct Log
{
    std::mutex mutex;
    QFile file;
    bool showsRequests = false;
};

Log &theLog()
{
    static Log log;
    return log;
}

void take(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    writeLog(message);
    Log &log = theLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    if (type != QtDebugMsg || log.showsRequests)
        terminal::write(stderr, message + QLatin1Char('\n'));
}

} // namespace

void startLog(const QString &file, bool showsRequests)
{
    Log &log = theLog();
    log.showsRequests = showsRequests;
    if (!file.isEmpty()) {
        log.file.setFileName(file);
        if (!log.file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
            throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(file));
    }
    if (file.isEmpty() && !showsRequests)
        return;
    QLoggingCategory::setFilterRules(QStringLiteral("vell.network.debug=true"));
    qInstallMessageHandler(take);
}

void writeLog(const QString &line)
{
    Log &log = theLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    if (!log.file.isOpen())
        return;
    const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    log.file.write((time + QLatin1Char(' ') + line + QLatin1Char('\n')).toUtf8());
}

} // namespace velldoc
