#include "CurlClient.h"

#include <document_service/VellDocumentData.h>

#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

// Calls of the library and the same requests by libcurl alone, in turn, in a process of its own:
// transport_run folders|document|list URL COUNT [CERTIFICATE AUTHORITY]
// Prints the medians in milliseconds.

namespace {

using Clock = std::chrono::steady_clock;

const QByteArray documents = QByteArrayLiteral("document-service/projects/default/documents");
// What VellDocumentData::getDocuments() asks with a default condition, as it goes over the wire.
const QByteArray listQuery = QByteArrayLiteral(
    "?where=%7B%22parentId%22%3Anull%7D&select=-entities&linkedEntity=true&expand=true"
    "&order=type%20order%20-updatedAt");

// First the servers finish what they still have to do for the request before, which would fall to this one.
constexpr std::chrono::milliseconds TimeToRest{2};

double millisecondsOf(const std::function<void()> &work)
{
    std::this_thread::sleep_for(TimeToRest);
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

//! The two ways to do one thing.
struct Pair
{
    std::function<void(int)> library;
    std::function<void(int)> curl;
};

Pair folders(CurlClient &curl)
{
    return {[](int i) {
                VellDocument folder;
                folder.name = QStringLiteral("library %1").arg(i);
                if (!VellDocumentData::instance()->createDocFolder(folder))
                    qFatal("The folder was not made");
            },
            [&curl](int i) {
                const QJsonObject body{{QStringLiteral("name"), QStringLiteral("curl %1").arg(i)},
                                       {QStringLiteral("parentId"), QJsonValue()},
                                       {QStringLiteral("type"), QStringLiteral("dir")}};
                curl.post(documents, "application/json",
                          QJsonDocument(body).toJson(QJsonDocument::Compact));
            }};
}

Pair document(CurlClient &curl)
{
    VellDocument folder;
    folder.name = QStringLiteral("one to ask for");
    if (!VellDocumentData::instance()->createDocFolder(folder))
        qFatal("The folder was not made");
    const QString id = folder._id;
    return {[id](int) {
                VellDocument found;
                VellDocumentData::instance()->getDoc(id, found, false);
                if (found._id != id)
                    qFatal("The document was not found");
            },
            [&curl, path = "document-service/documents/" + id.toLatin1()](int) { curl.get(path); }};
}

Pair list(CurlClient &curl)
{
    return {[](int) {
                QList<VellDocument> found;
                VellDocumentData::instance()->getDocuments(VellDocumentConditon(), found);
                if (found.isEmpty())
                    qFatal("The list is empty");
            },
            [&curl](int) { curl.get(documents + listQuery); }};
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString what = arguments.value(1);
    const QString url = arguments.value(2);
    const int count = arguments.value(3).toInt();
    const QString authority = arguments.value(4);
    VellBaseApi::GetInstance().setBaseApi(url);
    GetSoftCache()->setCurrentProjectId(QStringLiteral("default"));
    NetworkSettings::instance().setCaCertificates(authority);
    CurlClient curl(VellBaseApi::GetInstance().getBaseApi(), authority);

    Pair pair;
    if (what == QLatin1String("folders"))
        pair = folders(curl);
    else if (what == QLatin1String("document"))
        pair = document(curl);
    else if (what == QLatin1String("list"))
        pair = list(curl);
    if (!pair.library || count <= 0) {
        std::fprintf(stderr, "Usage: transport_run folders|document|list URL COUNT [AUTHORITY]\n");
        return 2;
    }
    // The first of each opens its connection.
    std::vector<double> library;
    std::vector<double> alone;
    for (int i = 0; i <= count; ++i) {
        const double libraryMs = millisecondsOf([&] { pair.library(i); });
        const double aloneMs = millisecondsOf([&] { pair.curl(i); });
        if (i > 0) {
            library.push_back(libraryMs);
            alone.push_back(aloneMs);
        }
    }
    const QJsonObject result{{QStringLiteral("library_ms"), median(library)},
                             {QStringLiteral("curl_ms"), median(alone)}};
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
