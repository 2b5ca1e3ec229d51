#include "Fuzzing.h"
#include "ServiceCalls.h"

#include <service/api/JsonCheck.h>

#include <QJsonDocument>

#include <array>

// The requests with JSON bodies: the first byte chooses one, the rest is the body, in which FOLDER and FILE stand for ids. No
// body makes the service fail, and one that is refused changes nothing.
namespace {

struct Route
{
    const char *method;
    const char *target;
};

constexpr std::array<Route, 7> Routes{{
    {"POST", "/document-service/projects/p/documents"},
    {"PUT", "/document-service/documents"},
    {"PUT", "/document-service/documents/FOLDER"},
    {"PUT", "/document-service/documents/FILE"},
    {"PUT", "/document-service/documents/FOLDER/records"},
    {"POST", "/document-service/documents/shares"},
    {"PUT", "/document-service/documents/histories/VERSION"},
}};

const QByteArray documents = "/document-service/projects/p/documents";

//! A folder with a file in it, made anew for each input.
class World
{
public:
    World()
    {
        const service::HttpResponse upload =
            m_calls.call("POST", "/base-service/files",
                         "--B\r\nContent-Disposition: form-data; name=\"file\"; filename=\"f\"\r\n"
                         "\r\nbytes\r\n--B--\r\n",
                         "multipart/form-data; boundary=B");
        m_content =
            QJsonDocument::fromJson(upload.body).object().value(QStringLiteral("files")).toArray();
    }

    void run(const Route &route, QByteArray body)
    {
        m_calls.clear();
        m_folder = m_calls.make("POST", documents, R"({"name":"folder","type":"dir"})");
        const QJsonObject file{{QStringLiteral("name"), QStringLiteral("file")},
                               {QStringLiteral("type"), QStringLiteral("file")},
                               {QStringLiteral("parentId"), QString::fromLatin1(m_folder)},
                               {QStringLiteral("file"), m_content.at(0)}};
        m_file = m_calls.make("POST", documents, QJsonDocument(file).toJson());
        m_version = QJsonDocument::fromJson(m_calls.call("GET", historyOf(m_file)).body)
                        .array()
                        .at(0)
                        .toObject()
                        .value(QStringLiteral("_id"))
                        .toString()
                        .toLatin1();
        const QByteArray before = state();
        const auto response = m_calls.call(route.method, withIds(route.target), withIds(body));
        require(response.status < 300 || state() == before, "a refusal that changes nothing");
    }

private:
    static QByteArray historyOf(const QByteArray &id)
    {
        return "/document-service/documents/" + id + "/histories";
    }
    QByteArray withIds(QByteArray text) const
    {
        return text.replace("FOLDER", m_folder)
            .replace("FILE", m_file)
            .replace("VERSION", m_version);
    }
    //! Everything that the requests may change.
    QByteArray state()
    {
        QByteArray all;
        for (const QByteArray &target :
             {documents + "?deep=true&linkedEntity=true&pwd=true", historyOf(m_file),
              QByteArray("/document-service/documents/records"),
              QByteArray("/document-service/documents/shares?hostId=p")})
            all += m_calls.call("GET", target).body;
        return all;
    }

    ServiceCalls m_calls;
    QJsonArray m_content;
    QByteArray m_folder;
    QByteArray m_file;
    QByteArray m_version;
};

//! What the service's own look at the text lets through is JSON for Qt, too, but for the letters.
void compareWithQt(const QByteArray &body)
{
    QJsonParseError error{};
    QJsonDocument::fromJson(body, &error);
    require(service::findJsonFault(body) != nullptr || error.error == QJsonParseError::NoError
                || error.error == QJsonParseError::IllegalUTF8String
                || error.error == QJsonParseError::IllegalNumber
                || error.error == QJsonParseError::IllegalValue,
            "JSON for both");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static World world;
    if (size == 0)
        return 0;
    const QByteArray body(reinterpret_cast<const char *>(data) + 1, int(size) - 1);
    compareWithQt(body);
    world.run(Routes[data[0] % Routes.size()], body);
    return 0;
}
