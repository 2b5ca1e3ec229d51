#include <async_ops/AsyncCreateDocument.h>
#include <document_model/DocumentConversions.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int ExitDone = 0;
constexpr int ExitFailed = 1;
constexpr int ExitUsage = 2;

void say(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

//! Runs one job and tells what it emits, line by line; the program ends with the job.
class Upload : public QObject
{
    Q_OBJECT

public:
    //! \param quiet how long nothing may be heard of the job before it counts as ended silently
    explicit Upload(std::chrono::milliseconds quiet);
    void start(const QString &path, const QString &name);

private:
    void heard(const QString &line);
    void end(const QString &line, int code);

    AsyncCreateDocument m_job;
    QTimer m_quiet;
};

Upload::Upload(std::chrono::milliseconds quiet)
{
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quiet);
    connect(&m_quiet, &QTimer::timeout, this, [this] { end("silence", ExitFailed); });
    connect(&m_job, &AsyncCreateDocument::uploadProgress, this, [this](qint64 bytes, qint64 total) {
        heard(QString("progress %1 %2").arg(bytes).arg(total));
    });
    connect(&m_job, &AsyncCreateDocument::finishUpload, this, [this] { heard("finishUpload"); });
    connect(&m_job, &AsyncCreateDocument::error, this,
            [this](int code) { end(QString("error %1").arg(code), ExitFailed); });
    connect(&m_job, &AsyncCreateDocument::createDocumentFinish, this,
            [this](const VellDocument &doc) {
                end(QString("document %1 %2").arg(doc._id, doc.fileId),
                    doc._id.isEmpty() ? ExitFailed : ExitDone);
            });
    connect(NetworkManager::instance(), &NetworkManager::requestFailed, this,
            [](const NetworkFailure &failure) {
                say(QString("failed %1 %2").arg(failure.httpStatus).arg(failure.message));
            });
}

void Upload::start(const QString &path, const QString &name)
{
    VellDocument doc;
    VellPubDoc::getVellDocument(path, doc);
    if (!name.isEmpty())
        doc.name = name;
    m_quiet.start();
    m_job.createDocument(QString(), doc);
}

void Upload::heard(const QString &line)
{
    say(line);
    m_quiet.start();
}

void Upload::end(const QString &line, int code)
{
    say(line);
    QCoreApplication::exit(code);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription("Uploads one file as a document.");
    parser.addHelpOption();
    parser.addOptions({
        {"url", "The service's base address.", "URL"},
        {"name", "The document's name, if not the file's.", "NAME"},
        {"stall-ms", "How long a request may stand still.", "MS", "30000"},
        {"quiet-ms", "When silence counts as the end.", "MS", "60000"},
    });
    parser.addPositionalArgument("file", "What to upload.");
    parser.process(application);
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1 || !parser.isSet("url")) {
        std::fprintf(stderr, "One file and --url are needed.\n");
        return ExitUsage;
    }

    const auto milliseconds = [&parser](const QString &option) {
        return std::chrono::milliseconds(parser.value(option).toInt());
    };
    VellBaseApi::GetInstance().setBaseApi(parser.value("url"));
    GetSoftCache()->setCurrentProjectId("p1");
    NetworkSettings::instance().setStallTimeout(milliseconds("stall-ms"));
    Upload upload(milliseconds("quiet-ms"));
    // From the event loop, because the job ends the program from within the call too.
    QTimer::singleShot(0, &upload, [&] { upload.start(files.constFirst(), parser.value("name")); });
    return QCoreApplication::exec();
}

#include "upload_client.moc"
