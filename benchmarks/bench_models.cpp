#include "LargeFolder.h"
#include "Ticks.h"

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <models/VellDocumentModel.h>
#include <service/ReferenceService.h>
#include <session/VellSession.h>

#include <VellNetwork/NetworkSettings.h>

#include <QApplication>
#include <QEventLoop>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <functional>

// How long the user-interface thread is not free while a table shows a folder of many entries, the service working on
// the same machine: between two ticks of a timer of 1 ms, painting included. On a busy machine only what the thread
// computes says something.
//   bench_models [ENTRIES]

namespace {

const QString project = QStringLiteral("p1");
constexpr int ScrollSteps = 400;

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
        const Ticks::Gap gap = m_ticks.stop();
        m_out << QString::fromLatin1(what).leftJustified(28)
              << QStringLiteral("%1 ms computing %2 ms in all")
                     .arg(gap.computingMs, 7, 'f', 1)
                     .arg(gap.ms, 7, 'f', 1)
              << Qt::endl;
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
    storeEntries(folder.path(), entries);
    ServiceOptions options;
    options.dataDir = folder.path();
    ReferenceService service(options);
    QString error;
    if (!service.start(&error))
        qFatal("%s", qPrintable(error));
    Bench(service.baseApi()).run();
    return 0;
}
