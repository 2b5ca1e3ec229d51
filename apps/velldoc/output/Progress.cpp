#include <velldoc/output/Progress.h>

#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Output.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

#include <cstdio>

namespace velldoc {

namespace {

constexpr int RedrawMs = 100;
constexpr int PlainAfterMs = 1000;
constexpr int RateWindowMs = 5000;
constexpr int LeastRateMs = 500;
constexpr int WidestBar = 30;
constexpr int NarrowestBar = 5;
constexpr int WidestName = 40;
constexpr int ReadableName = 16;
constexpr int NarrowestName = 5;
// Some terminals start a new line after the last column, and Ctrl-C is shown as "^C".
constexpr int Reserve = 3;

} // namespace

Progress::Progress(const Output &output)
    : m_isShown(terminal::isTerminal(stderr)), m_isPlain(!m_isShown && !output.isJson())
{}

Progress::~Progress()
{
    clear();
}

void Progress::begin(const QString &what, qint64 totalBytes)
{
    m_what = printable(what);
    m_totalBytes = totalBytes;
    m_doneBytes = 0;
    m_isComplete = false;
    m_plainTenths = 0;
    m_samples.clear();
    m_clock.start();
    m_sinceDrawn.invalidate();
    draw();
}

void Progress::setText(const QString &what)
{
    m_what = printable(what);
}

void Progress::update(qint64 doneBytes)
{
    m_doneBytes = qBound(qint64(0), doneBytes, m_totalBytes);
    const qint64 now = m_clock.elapsed();
    m_samples.append({now, m_doneBytes});
    while (m_samples.size() > 2 && m_samples.constFirst().first < now - RateWindowMs)
        m_samples.removeFirst();
    if (!m_sinceDrawn.isValid() || m_sinceDrawn.hasExpired(RedrawMs))
        draw();
    if (m_isPlain)
        drawPlain();
}

void Progress::end()
{
    m_doneBytes = m_totalBytes;
    m_isComplete = true;
    draw();
}

void Progress::clear()
{
    if (!m_isDrawn)
        return;
    show(QString());
    terminal::write(stderr, QStringLiteral("\r"));
    m_isDrawn = false;
}

void Progress::draw()
{
    if (!m_isShown)
        return;
    m_sinceDrawn.start();
    show(line(terminal::width(stderr)));
    m_isDrawn = true;
}

void Progress::show(const QString &line)
{
    const QString rest = terminal::hasSequences(stderr)
        ? QStringLiteral("\x1b[K")
        : QString(qMax(0, terminal::width(stderr) - 1 - displayWidth(line)), QLatin1Char(' '));
    terminal::write(stderr, QLatin1Char('\r') + line + rest);
    std::fflush(stderr);
}

void Progress::drawPlain()
{
    const int tenths = percent() / 10;
    if (tenths <= m_plainTenths || m_clock.elapsed() < PlainAfterMs)
        return;
    m_plainTenths = tenths;
    terminal::write(
        stderr,
        QStringLiteral("%1: %2 % %3\n")
            .arg(m_what, QString::number(percent()), figures().join(QLatin1String("  "))));
    std::fflush(stderr);
}

int Progress::percent() const
{
    constexpr qint64 Hundred = 100;
    if (m_isComplete)
        return int(Hundred);
    const qint64 percent =
        m_totalBytes > 0 ? m_doneBytes / qMax(qint64(1), m_totalBytes / Hundred) : 0;
    return int(qMin(percent, Hundred - 1));
}

QString Progress::line(int width) const
{
    const int columns = width - Reserve;
    const int readable = qMin(displayWidth(m_what), ReadableName);
    QStringList parts = figures();
    QString tail;
    do {
        tail = QStringLiteral(" %1 % %2").arg(percent(), 3).arg(parts.join(QLatin1String("  ")));
        parts.removeLast();
    } while (!parts.isEmpty() && columns - displayWidth(tail) < readable);
    const int room = columns - displayWidth(tail);
    const QString name =
        elided(m_what, qBound(NarrowestName, qMax(room / 2, qMin(room, readable)), WidestName));
    const int bar = qMin(room - displayWidth(name) - 3, WidestBar);
    if (bar < NarrowestBar)
        return elided(name + tail, columns);
    const int filled = bar * percent() / 100;
    return QStringLiteral("%1 [%2%3]%4")
        .arg(name, QString(filled, QLatin1Char('#')), QString(bar - filled, QLatin1Char('.')),
             tail);
}

QStringList Progress::figures() const
{
    QStringList parts{Text::tr("%1 of %2").arg(sizeText(m_doneBytes), sizeText(m_totalBytes))};
    const qint64 rate = bytesPerSecond();
    if (rate <= 0 || m_isComplete)
        return parts;
    const std::chrono::seconds left((m_totalBytes - m_doneBytes) / rate);
    return parts << rateText(rate) << Text::tr("%1 left").arg(durationText(left));
}

qint64 Progress::bytesPerSecond() const
{
    if (m_samples.isEmpty())
        return 0;
    constexpr qint64 MsPerSecond = 1000;
    const qint64 ms = m_samples.constLast().first - m_samples.constFirst().first;
    if (ms < LeastRateMs)
        return 0;
    return (m_samples.constLast().second - m_samples.constFirst().second) * MsPerSecond / ms;
}

} // namespace velldoc
