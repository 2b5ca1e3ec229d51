#include "Hands.h"
#include "OtherHand.h"
#include "Trouble.h"
#include "Watchdog.h"

#include <desktop/app/FreeMemory.h>
#include <support/HttpClient.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTextStream>

#include <algorithm>

#include <malloc.h>

// Uses vell-desktop as nobody would: at random, while the service is killed, the network cut, rights are taken, the store is full and
// somebody else changes the same folders. In the end no document may be lost and each content must be one that was stored under that name.
// See docs/testing.md.

namespace {

constexpr int StepMs = 20;
constexpr int SettleMs = 120'000;
constexpr int MostMemoryMib = 700;
constexpr int MostHeapGrowthMib =
    150; // an hour takes half of it, with the requests that the proxy notes

class Monkey
{
public:
    Monkey(quint32 seed, int seconds, quint32 firstStep)
        : m_seed(seed), m_seconds(seconds), m_firstStep(firstStep), m_step(firstStep - 1),
          m_hands(&m_world), m_other(&m_world), m_trouble(&m_world)
    {}

    //! \return the exit code
    int run();

private:
    void schedule();
    void step();
    QString act(Dice *dice);
    QString restart();
    void settle();
    QStringList problems();
    QList<VellDocument> documents(bool isBin);

    const quint32 m_seed;
    const int m_seconds;
    const quint32 m_firstStep;
    quint32 m_step; // the latest
    QTextStream m_out{stdout};
    Watchdog m_watchdog;
    MonkeyWorld m_world;
    Hands m_hands;
    OtherHand m_other;
    Trouble m_trouble;
    int m_depth = 0; // of steps that wait for the end of a menu or a dialog
    QElapsedTimer m_clock;
    bool m_isOver = false;
};

int memoryMib(const QByteArray &key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').first().toInt() / 1024;
    }
    return 0;
}

//! What is allocated at the moment, without what the allocator keeps for later.
int heapMib()
{
    const struct mallinfo2 info = mallinfo2();
    return int((info.uordblks + info.hblkhd) >> 20);
}

// Each step is scheduled by the one before it before it acts: menus and message boxes wait in a loop of their own.
void Monkey::schedule()
{
    QTimer::singleShot(StepMs, &m_world, [this] {
        if (m_isOver)
            return;
        schedule();
        step();
    });
}

void Monkey::step()
{
    ++m_step;
    Dice dice(m_seed, m_step);
    ++m_depth;
    const quint32 number = m_step;
    const QString text = act(&dice);
    --m_depth;
    m_out << number << '\t' << m_clock.elapsed() << '\t' << text.left(160).simplified() << Qt::endl;
}

QString Monkey::act(Dice *dice)
{
    const int roll = dice->roll(1000);
    if (roll < 12)
        return QStringLiteral("TROUBLE: ") + m_trouble.make(dice);
    if (roll < 90)
        return QStringLiteral("other user: ") + m_other.act(dice);
    if (roll < 93 && m_depth == 1 && !Hands::closeFront())
        return restart();
    return m_hands.act(dice);
}

QString Monkey::restart()
{
    m_world.endProgram();
    m_world.startProgram();
    return QStringLiteral("the program ends and starts again");
}

int Monkey::run()
{
    m_out << "seed " << m_seed << Qt::endl;
    m_clock.start();
    m_world.startProgram();
    const int startMib = memoryMib("VmRSS:");
    const int startHeapMib = heapMib();
    schedule();
    QTest::qWait(m_seconds * 1000);
    m_isOver = true;
    settle();
    QStringList wrong = problems();
    const int endMib = memoryMib("VmRSS:");
    const int endHeapMib = heapMib();
    if (endMib > MostMemoryMib)
        wrong.append(QStringLiteral("it needs %1 MiB").arg(endMib));
    if (endHeapMib - startHeapMib > MostHeapGrowthMib)
        wrong.append(QStringLiteral("%1 MiB are allocated").arg(endHeapMib));
    for (const QString &problem : qAsConst(wrong))
        m_out << "WRONG: " << problem << '\n';
    m_out << m_step + 1 - m_firstStep << " steps, " << m_world.ledger.documentCount()
          << " documents, memory " << startMib << " MiB at first, " << endMib
          << " MiB at the end, allocated " << startHeapMib << " and " << endHeapMib
          << " MiB; longest gap of the event loop " << m_watchdog.longestMs() << " ms; seed "
          << m_seed << (wrong.isEmpty() ? "; all is well" : "") << Qt::endl;
    m_watchdog.note("ending the program");
    m_world.endProgram();
    m_watchdog.stop(); // removing the files takes as long as it takes
    if (!wrong.isEmpty())
        m_out << "everything is in " << m_world.keepFiles() << Qt::endl;
    return wrong.isEmpty() ? 0 : 1;
}

//! Lets everything that was begun come to its end.
void Monkey::settle()
{
    m_watchdog.note("settling");
    m_trouble.end();
    const auto hasNoFront = [] { return !Hands::closeFront(); };
    if (!QTest::qWaitFor(hasNoFront, SettleMs))
        qFatal("a dialog cannot be closed");
    VellTransferQueue &queue = m_world.workspace().queue;
    queue.resumeAll();
    const auto areEnded = [&] {
        for (VellTransferQueue *const each : {&queue, m_other.queue()}) {
            const QVector<qint64> ids = each->ids();
            for (const qint64 id : ids) {
                if (each->transfer(id).state == VellTransferState::Asking)
                    each->answer(id, VellConflictPolicy::KeepBoth);
            }
        }
        Hands::closeFront();
        return queue.totals().openCount() == 0 && m_other.queue()->totals().openCount() == 0;
    };
    if (!QTest::qWaitFor(areEnded, SettleMs))
        m_out << "transfers do not end: " << queue.totals().openCount() << " of the program"
              << Qt::endl;
}

QList<VellDocument> Monkey::documents(bool isBin)
{
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.isDeep = isBin;
    if (isBin)
        condition.category = QStringLiteral("recycle");
    QList<VellDocument> found;
    bool isEnded = false;
    VellDocumentSort byName;
    m_other.documents()
        ->page(condition, byName, 0, 100'000)
        ->then(
            &m_world,
            [&](const VellPage &page) {
                found = page.documents;
                isEnded = true;
            },
            [](const VellError &error) { qFatal("no list: %s", qPrintable(error.detail)); });
    if (!QTest::qWaitFor([&] { return isEnded; }, SettleMs))
        qFatal("the list does not come");
    return found;
}

QStringList Monkey::problems()
{
    HttpClient http(m_world.service.baseApi());
    http.setToken(m_world.otherToken());
    return m_world.ledger.compare(documents(false), documents(true), &http);
}

} // namespace

int main(int argc, char **argv)
{
    desktop::FreeMemory::share(); // as the program does
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8()); // the default folder of file dialogs
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    const QCommandLineOption seconds(QStringLiteral("seconds"), QStringLiteral("How long."),
                                     QStringLiteral("N"), QStringLiteral("60"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Decides the steps."),
                                  QStringLiteral("N"),
                                  QString::number(QRandomGenerator::global()->generate()));
    const QCommandLineOption first(
        QStringLiteral("first"),
        QStringLiteral("The first step, to repeat the end of a long run without its beginning."),
        QStringLiteral("N"), QStringLiteral("1"));
    parser.addOptions({seconds, seed, first});
    parser.addHelpOption();
    parser.process(application);
    return Monkey(parser.value(seed).toUInt(), parser.value(seconds).toInt(),
                  parser.value(first).toUInt())
        .run();
}
