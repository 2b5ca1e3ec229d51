#include "LargeFolder.h"
#include "Ticks.h"

#include <support/ServiceProcess.h>

#include <desktop/actions/Actions.h>
#include <desktop/app/Desktop.h>
#include <desktop/lists/DocumentPane.h>
#include <desktop/window/MainWindow.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QListView>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTreeView>

#include <algorithm>
#include <functional>

// What the user waits for in a folder of many entries: the window of vell-desktop under the offscreen platform, the
// service in another process. Each line: until the rows that are in sight are there and painted, the longest time that the
// window's thread was not free, what it has computed in that time at most, and the memory of the program afterwards.
//   bench_desktop [ENTRIES] [GIB] [DATA]
// With GIB the same while a sparse file of that size is uploaded. DATA keeps what is stored for the next run.

using namespace desktop;

namespace {

constexpr int LongestWaitMs = 60'000;
constexpr int Places = 20;
const QString largeFolder = QStringLiteral("Large");

double statusMib(const QByteArray &key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(key))
            return line.mid(key.size() + 1).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

bool waitFor(const std::function<bool()> &condition)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > LongestWaitMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

class Bench
{
public:
    Bench(const QString &address, const QString &home)
    {
        StartOptions options;
        options.paths = AppPaths::below(home);
        SavedConnection connection;
        connection.address = address;
        connection.projectId = QStringLiteral("p1");
        connection.proxy = QStringLiteral("none");
        options.connection = connection;
        m_program = std::make_unique<Desktop>(options);
        m_program->start();
        if (!waitFor([this] { return areRowsInSight(); }))
            qFatal("the window does not show the top level");
        window()->findChild<QFrame *>(QStringLiteral("firstSteps"))->hide();
        window()->resize(1400, 900);
    }

    void run(const QString &title)
    {
        m_out << title << "\n                            wait ms   gap ms  computing ms     MiB\n";
        openFolder();
        look("details", table());
        begin();
        trigger(ActionId::IconsView);
        measure("icons", [this] { return areRowsInSight(); });
        look("icons", icons());
        trigger(ActionId::DetailsView);
        sortAndSelect();
        leaveFolder();
        m_out << "most memory so far: " << QString::number(statusMib("VmHWM:"), 'f', 0) << " MiB"
              << Qt::endl;
    }

    //! Runs once while a file of \a bytes is hashed, and once while it is sent.
    void runBesideUpload(const QString &path, qint64 bytes)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || !file.resize(bytes))
            qFatal("%s cannot be made", qPrintable(path));
        VellTransferQueue &queue = m_program->workspace()->queue;
        queue.upload(path, QString(), VellConflictPolicy::Replace);
        for (const auto state : {VellTransferState::Hashing, VellTransferState::Sending}) {
            if (!waitFor([&] { return queue.totals().count(state) > 0; }))
                qFatal("the file is not sent");
            const bool isHashing = state == VellTransferState::Hashing;
            run(isHashing ? QStringLiteral("while a file is hashed")
                          : QStringLiteral("while a file is sent"));
            m_out << (queue.totals().count(state) > 0 ? "" : "(it had ended before this)\n");
        }
        queue.cancelAll();
    }

private:
    MainWindow *window() { return m_program->window(); }
    DocumentPane *pane() { return window()->pane(); }
    QTreeView *table() { return window()->findChild<QTreeView *>(QStringLiteral("table")); }
    QListView *icons() { return window()->findChild<QListView *>(QStringLiteral("icons")); }
    void trigger(ActionId id) { window()->actionTable()->at(id)->trigger(); }

    bool areRowsInSight()
    {
        QAbstractItemView *const view =
            table()->isVisible() ? static_cast<QAbstractItemView *>(table()) : icons();
        if (!view->isVisible() || view->model()->rowCount() == 0)
            return false;
        const int stepX = view == icons() ? icons()->gridSize().width() : view->width();
        const int stepY = view == icons()
            ? icons()->gridSize().height()
            : view->visualRect(view->model()->index(view->indexAt({60, 2}).row(), 0)).height();
        bool isAny = false; // not before the view has its layout
        if (stepY <= 0)
            return false;
        for (int y = stepY / 2; y < view->viewport()->height(); y += stepY) {
            for (int x = qMin(stepX / 2, 60); x < view->viewport()->width(); x += stepX) {
                const QModelIndex index = view->indexAt({x, y});
                isAny = isAny || index.isValid();
                if (index.isValid() && !index.data(VellModelRole::IsLoaded).toBool())
                    return false;
            }
        }
        return isAny;
    }

    void measure(const char *what, const std::function<bool()> &isDone)
    {
        const double ms = wait(isDone);
        report(what, ms, m_ticks.stop());
    }

    //! \return milliseconds, painting included
    double wait(const std::function<bool()> &isDone)
    {
        if (!m_isTicking) {
            m_ticks.start();
            m_clock.start();
        }
        m_isTicking = false;
        if (!waitFor(isDone))
            qFatal("it does not end");
        const double ms = double(m_clock.nsecsElapsed()) / 1e6;
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
        return ms;
    }

    //! What follows is a part of the next measurement.
    void begin()
    {
        m_isTicking = true;
        m_ticks.start();
        m_clock.start();
    }

    void report(const char *what, double ms, const Ticks::Gap &gap)
    {
        m_out << QString::fromLatin1(what).leftJustified(26)
              << QStringLiteral("%1 %2 %3 %4")
                     .arg(ms, 9, 'f', 1)
                     .arg(gap.ms, 8, 'f', 1)
                     .arg(gap.computingMs, 13, 'f', 1)
                     .arg(statusMib("VmRSS:"), 7, 'f', 0)
              << Qt::endl;
    }

    void openFolder()
    {
        const QModelIndex index = rowOf(largeFolder);
        table()->scrollTo(index);
        const QPoint place = table()->visualRect(index).center();
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, place);
        begin();
        QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, place);
        measure("open, first rows",
                [this] { return pane()->model()->rowCount() > 1000 && areRowsInSight(); });
    }

    QModelIndex rowOf(const QString &name)
    {
        const DocumentListModel *const model = pane()->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            if (model->index(row, 0).data().toString() == name)
                return model->index(row, 0);
        }
        qFatal("%s is not in sight", qPrintable(name));
    }

    void look(const char *name, QAbstractItemView *view)
    {
        QRandomGenerator random(1);
        QVector<double> times;
        Ticks::Gap worst;
        QScrollBar *const bar = view->verticalScrollBar();
        for (int i = 0; i < Places; ++i) {
            begin();
            bar->setValue(random.bounded(bar->maximum()));
            times.append(wait([this] { return areRowsInSight(); }));
            const Ticks::Gap gap = m_ticks.stop();
            worst = {std::max(worst.ms, gap.ms), std::max(worst.computingMs, gap.computingMs)};
        }
        std::sort(times.begin(), times.end());
        report(qPrintable(QLatin1String(name) + QStringLiteral(", median of places")),
               times.at(Places / 2), worst);
        report(qPrintable(QLatin1String(name) + QStringLiteral(", worst place")), times.last(),
               worst);
    }

    void sortAndSelect()
    {
        for (const auto &[title, column] :
             {std::make_pair("sort by size", VellDocumentModel::SizeColumn),
              std::make_pair("sort by name", VellDocumentModel::NameColumn)}) {
            begin();
            table()->sortByColumn(column, Qt::DescendingOrder);
            measure(title, [this] { return !pane()->model()->isLoading() && areRowsInSight(); });
        }
        begin();
        trigger(ActionId::SelectAll);
        measure("select all", [this] { return areRowsInSight(); });
        begin();
        table()->sortByColumn(VellDocumentModel::NameColumn, Qt::AscendingOrder);
        measure("sort, all selected",
                [this] { return !pane()->model()->isLoading() && areRowsInSight(); });
        begin();
        table()->clearSelection();
        measure("select none", [this] { return areRowsInSight(); });
    }

    void leaveFolder()
    {
        begin();
        trigger(ActionId::Up);
        measure("up", [this] {
            return window()->location() == Location::folder(QString())
                && !pane()->model()->isLoading() && areRowsInSight();
        });
    }

    QTextStream m_out{stdout};
    std::unique_ptr<Desktop> m_program;
    Ticks m_ticks;
    QElapsedTimer m_clock;
    bool m_isTicking = false;
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int entries = arguments.value(1, QStringLiteral("100000")).toInt();
    const double gib = arguments.value(2, QStringLiteral("0")).toDouble();
    const QTemporaryDir folder;
    const QString data = arguments.value(3, folder.filePath(QStringLiteral("data")));
    if (!QFile::exists(data))
        storeEntries(data, entries, largeFolder);
    ServiceProcess service(data);
    if (!service.start())
        return 1;
    Bench bench(service.baseApi(), folder.filePath(QStringLiteral("home")));
    bench.run(QStringLiteral("%1 entries").arg(entries));
    if (gib > 0)
        bench.runBesideUpload(folder.filePath(QStringLiteral("large")), qint64(gib * (1 << 30)));
    return 0;
}
