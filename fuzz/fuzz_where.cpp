#include "Fuzzing.h"
#include "ServiceCalls.h"

#include <QJsonDocument>

// Lists: the first line of the input is the condition, the second the sort keys, the third a category, the fourth flags. Every
// one is answered or refused; a count is the length of its list, and pages together are the list.
namespace {

const QByteArray documents = "/document-service/projects/p/documents";

class World
{
public:
    World()
    {
        const QByteArray folder = add("Folder", "null");
        for (const char *name : {"a", "A", "R&D 100% #1 + \\u56fe", "x.dwg", ""})
            add(*name == '\0' ? "(empty)" : name, "null");
        add("below", '"' + folder + '"');
        const QByteArray deleted = add("deleted", "null");
        m_calls.call("DELETE", "/document-service/documents/" + deleted);
        m_calls.call("PUT", "/document-service/documents/" + folder + "/records",
                     R"({"type":1,"value":true})");
    }

    void run(const QList<QByteArray> &lines)
    {
        QByteArray target = documents + "?where=" + lines.value(0, "{}").toPercentEncoding()
            + "&order=" + lines.value(1).toPercentEncoding()
            + "&category=" + lines.value(2).toPercentEncoding();
        for (const QByteArray &flag : lines.value(3).split(' ')) {
            if (!flag.isEmpty())
                target += '&' + flag.toPercentEncoding("=");
        }
        service::HttpResponse answer;
        try {
            answer = m_calls.call("GET", target);
        } catch (const service::HttpError &) {
            return; // not UTF-8
        }
        require(answer.status == 200 || answer.status == 400, "an answer or a refusal");
        const QJsonDocument whole = QJsonDocument::fromJson(answer.body);
        const bool isPage = lines.value(3).contains("limit") || lines.value(3).contains("skip");
        if (answer.status == 200 && whole.isArray() && !isPage)
            compareParts(target, whole.array());
    }

private:
    QByteArray add(const QByteArray &name, const QByteArray &parent)
    {
        return m_calls.make("POST", documents,
                            "{\"type\":\"dir\",\"name\":\"" + name + "\",\"parentId\":" + parent
                                + ",\"category\":\"c\"}");
    }

    void compareParts(const QByteArray &target, const QJsonArray &whole)
    {
        const QJsonDocument count =
            QJsonDocument::fromJson(m_calls.call("GET", target + "&only_count=true").body);
        require(count.object().value(QStringLiteral("count")).toInt(-1) == whole.size(),
                "a count as long as the list");
        QJsonArray pages;
        for (int skip = 0; skip < whole.size(); skip += 2) {
            const QByteArray page = "&limit=2&skip=" + QByteArray::number(skip);
            const QJsonArray part =
                QJsonDocument::fromJson(m_calls.call("GET", target + page).body).array();
            for (const QJsonValue &document : part)
                pages.append(document);
        }
        require(pages == whole, "pages that are the list");
    }

    ServiceCalls m_calls;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static World world;
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    world.run(text.split('\n'));
    return 0;
}
