#include "Fuzzing.h"

#include <service/http/HttpMessages.h>
#include <service/http/MultipartParser.h>

#include <QList>

#include <optional>

using namespace service;

// Forms: pieces of any size give what the whole gives, and contents are those of a reader that has all of the form at hand. The
// first byte is the size of the pieces, the first line the boundary.
namespace {

struct Part
{
    QString name;
    QString fileName;
    QByteArray content;
    bool isEnded = false;

    bool operator==(const Part &other) const
    {
        return name == other.name && fileName == other.fileName && content == other.content
            && isEnded == other.isEnded;
    }
};

class Parts final : public MultipartParser::Receiver
{
public:
    void beginPart(const MultipartParser::Part &part) override
    {
        list.append({part.name, part.fileName, {}, false});
    }
    void partContent(const char *data, qint64 length) override
    {
        list.last().content.append(data, int(length));
    }
    void endPart() override { list.last().isEnded = true; }

    QList<Part> list;
};

//! Nothing for a form that is refused.
std::optional<QList<Part>> parsed(const QByteArray &boundary, const QByteArray &body, int step)
{
    Parts parts;
    try {
        MultipartParser parser("multipart/form-data; boundary=\"" + boundary + '"', parts);
        for (int at = 0; at < body.size(); at += step)
            parser.feed(body.constData() + at, std::min(step, body.size() - at));
        parser.finish();
    } catch (const HttpError &error) {
        require(error.status() == 400 || error.status() == 415, "a refusal");
        return std::nullopt;
    }
    return parts.list;
}

//! The contents between the delimiters, for a form that is in order.
QList<QByteArray> plainContents(const QByteArray &boundary, const QByteArray &body)
{
    const QByteArray text = "\r\n" + body;
    const QByteArray delimiter = "\r\n--" + boundary;
    QList<QByteArray> contents;
    int at = text.indexOf(delimiter) + delimiter.size();
    while (!text.mid(at).startsWith("--")) {
        const int start = text.indexOf("\r\n\r\n", at) + 4;
        const int end = text.indexOf(delimiter, start);
        contents.append(text.mid(start, end - start));
        at = end + delimiter.size();
    }
    return contents;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray input(reinterpret_cast<const char *>(data) + 1, int(size) - 1);
    const int lineEnd = input.indexOf('\n');
    const QByteArray boundary = input.left(std::max(0, lineEnd));
    const QByteArray body = input.mid(lineEnd + 1);
    const auto whole = parsed(boundary, body, std::max(1, body.size()));
    require(whole == parsed(boundary, body, 1 + data[0]), "pieces like the whole");
    if (!whole || boundary.contains('"') || boundary.contains('\\')
        || boundary.trimmed() != boundary)
        return 0;
    QList<QByteArray> contents;
    for (const Part &part : *whole) {
        require(part.isEnded && !part.name.isEmpty(), "parts with a name and an end");
        contents.append(part.content);
    }
    require(contents == plainContents(boundary, body), "contents as they stand in the form");
    return 0;
}
