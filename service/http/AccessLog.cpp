#include <service/http/AccessLog.h>

#include <service/http/HttpServer.h>

#include <QDateTime>

#include <cstdio>

namespace service {

namespace {

constexpr int MaxFieldLength = 300;

//! Replaces what could begin a new line of the log or be invisible in it.
QString printable(const QString &whole)
{
    QString text = whole.left(MaxFieldLength);
    for (QChar &c : text) {
        if (c.isSpace() || !c.isPrint())
            c = QLatin1Char('?');
    }
    return text.isEmpty() ? QStringLiteral("-") : text;
}

} // namespace

bool AccessLog::open(const QString &target, QString *error)
{
    m_target = target;
    return reopen(error);
}

bool AccessLog::reopen(QString *error)
{
    if (m_target.isEmpty())
        return true;
    auto file = std::make_unique<QFile>(m_target);
    const bool isOpen = m_target == QLatin1String("-")
        ? file->open(stderr, QIODevice::WriteOnly)
        : file->open(QIODevice::WriteOnly | QIODevice::Append);
    if (!isOpen) {
        *error = QStringLiteral("The access log %1 cannot be written: %2.")
                     .arg(m_target, file->errorString());
        return false;
    }
    const std::lock_guard<std::mutex> lock(m_lock);
    m_file = std::move(file);
    return true;
}

void AccessLog::write(const ServedRequest &request)
{
    const std::lock_guard<std::mutex> lock(m_lock);
    if (!m_file)
        return;
    const QString status =
        request.status == 0 ? QStringLiteral("-") : QString::number(request.status);
    const QString line =
        QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8ms\n")
            .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs), request.client,
                 printable(request.user), printable(QString::fromLatin1(request.method)),
                 printable(request.path), status, QString::number(request.bytes),
                 QString::number(request.milliseconds));
    m_file->write(line.toUtf8());
    m_file->flush();
}

void AccessLog::close()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_file.reset();
}

} // namespace service
