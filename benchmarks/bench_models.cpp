#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <models/VellDocumentModel.h>
#include <service/ReferenceService.h>
#include <service/records/Documents.h>
#include <service/records/Files.h>
#include <service/records/Projects.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Database.h>
#include <service/storage/Statement.h>
#include <session/VellSession.h>

#include <VellNetwork/NetworkSettings.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <functional>

// How long the user-interface thread is not free while a table shows a folder of many entries, the service working on
// the same machine: between two ticks of a timer of 1 ms, painting included. On a busy machine only what the thread
// computes says something.
//   bench_models [ENTRIES]

namespace {

const QString project = QStringLiteral("p1");
constexpr int ScrollSteps = 400;

void fill(const QString &dataDir, int entries)
{
    using namespace service;
    const DataFolder folder(dataDir);
    Database database(folder);
    database.open();
    Transaction transaction(database);
    Projects(database).ensure(project);
    const QString user = QStringLiteral("local");
    Documents documents(database, user);
    const StoredFile file =
        Files(database).insert({QString(), QStringLiteral("md5"), QString(), 1, {}}, user);
    for (int i = 0; i < entries; ++i) {
        Document entry;
        entry.projectId = project;
        entry.type = i % 10 == 0 ? QStringLiteral("dir") : QStringLiteral("file");
        entry.fileId = i % 10 == 0 ? QString() : file.id;
        entry.name = QStringLiteral("drawing %1.dwg").arg(i, 6, 10, QLatin1Char('0'));
        documents.insert(entry);
    }
    transaction.commit();
}

qint64 cpuNs()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

//! The longest time between two ticks, and the most that the thread has computed between two.
class Ticks
{
public:
    Ticks()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
    }
    void start()
    {
        m_longestNs = 0;
        m_mostCpuNs = 0;
        m_clock.start();
        m_cpuNs = cpuNs();
        m_timer.start(1);
    }
    QString stop()
    {
        m_timer.stop();
        tick();
        return QStringLiteral("%1 ms computing %2 ms in all")
            .arg(double(m_mostCpuNs) / 1e6, 7, 'f', 1)
            .arg(double(m_longestNs) / 1e6, 7, 'f', 1);
    }

private:
    void tick()
    {
        m_longestNs = std::max(m_longestNs, m_clock.nsecsElapsed());
        m_mostCpuNs = std::max(m_mostCpuNs, cpuNs() - m_cpuNs);
        m_clock.start();
        m_cpuNs = cpuNs();
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_cpuNs = 0;
    qint64 m_longestNs = 0;
    qint64 m_mostCpuNs = 0;
};

class Bench
{
public:
    explicit Bench(const QString &address) : m_documents(&m_session), m_model(&m_documents)
    {
        VellConnection connection;
        connection.address = address;
        connection.proxy = NetworkSettings::noProxy();
        QEventLoop loop;
        QObject::connect(&m_session, &VellSession::opened, &loop, &QEventLoop::quit);
        m_session.open(connection);
        loop.exec();
        m_session.openProject(project);
        m_table.setModel(&m_model);
        m_table.resize(1000, 800);
        m_table.show();
    }

    void run()
    {
        loaded("first page", [this] { m_model.setSource(VellDocumentSource::folder(QString())); });
        m_out << m_model.rowCount() << " entries\n";
        scroll("scroll by lines", [this](int step) { return step * 3; });
        scroll("scroll by pages", [this](int step) { return step * 30; });
        scroll("drag through all",
               [this](int step) { return m_model.rowCount() / ScrollSteps * step; });
        m_table.selectRow(10);
        loaded("reload", [this] { m_model.reload(); });
        loaded("sort, selection near", [this] { sort(Qt::DescendingOrder); });
        m_table.scrollToTop();
        loaded("sort, selection far", [this] { sort(Qt::AscendingOrder); });
        m_table.selectAll();
        loaded("sort, all selected", [this] { sort(Qt::DescendingOrder); });
        m_table.clearSelection();
        m_table.hide();
        scroll("pages without a view", [this](int step) {
            for (int row = step * 30; row < step * 30 + 30; ++row) {
                for (int column = 0; column < m_model.columnCount(); ++column)
                    m_model.index(row, column).data();
            }
            return 0;
        });
        loaded("reload without a view", [this] { m_model.reload(); });
        m_table.show();
        measure("remove 100 in one place", [this] {
            QStringList ids;
            for (int row = 20; row < 120; ++row) {
                if (const auto document = m_model.document(m_model.index(row, 0)))
                    ids.append(document->_id);
            }
            m_documents.store()->remove(ids);
            QCoreApplication::processEvents();
        });
    }

private:
    void sort(Qt::SortOrder order) { m_model.sort(VellDocumentModel::NameColumn, order); }

    void measure(const char *what, const std::function<void()> &work)
    {
        m_ticks.start();
        work();
        m_out << QString::fromLatin1(what).leftJustified(28) << m_ticks.stop() << Qt::endl;
    }

    void loaded(const char *what, const std::function<void()> &work)
    {
        measure(what, [this, &work] {
            QEventLoop loop;
            QObject::connect(&m_model, &VellDocumentModel::loaded, &loop, &QEventLoop::quit,
                             Qt::QueuedConnection);
            work();
            loop.exec();
        });
    }

    void scroll(const char *what, const std::function<int(int)> &rowOf)
    {
        measure(what, [this, &rowOf] {
            QEventLoop loop;
            QTimer steps;
            int step = 0;
            QObject::connect(&steps, &QTimer::timeout, [&] {
                m_table.verticalScrollBar()->setValue(rowOf(step));
                if (++step == ScrollSteps)
                    loop.quit();
            });
            steps.start(16);
            loop.exec();
        });
    }

    QTextStream m_out{stdout};
    VellSession m_session;
    VellDocuments m_documents;
    VellDocumentModel m_model;
    QTableView m_table;
    Ticks m_ticks;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const int entries = argc > 1 ? QByteArray(argv[1]).toInt() : 100'000;
    const QTemporaryDir folder;
    fill(folder.path(), entries);
    ServiceOptions options;
    options.dataDir = folder.path();
    ReferenceService service(options);
    QString error;
    if (!service.start(&error))
        qFatal("%s", qPrintable(error));
    Bench(service.baseApi()).run();
    return 0;
}
