#include "Fuzzing.h"

#include <service/http/RequestHead.h>

#include <algorithm>

using namespace service;

// Heads of requests, beside a reader that goes line by line: what is accepted means the same to both, and to every program on
// the way.
namespace {

constexpr qint64 MaxBodyBytes = 1000000;

bool isToken(const QByteArray &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')
            || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
    });
}

//! The value without the spaces and tabs around it.
QByteArray trimmed(QByteArray value)
{
    while (value.startsWith(' ') || value.startsWith('\t'))
        value.remove(0, 1);
    while (value.endsWith(' ') || value.endsWith('\t'))
        value.chop(1);
    return value;
}

void compare(const QByteArray &text, const RequestHead &head)
{
    QList<QByteArray> lines = text.left(text.size() - 4).split('\n');
    for (int i = 0; i + 1 < lines.size(); ++i) {
        require(lines[i].endsWith('\r'), "lines that end with CR LF");
        lines[i].chop(1);
    }
    const QList<QByteArray> words = lines.takeFirst().split(' ');
    require(words.size() == 3 && isToken(words[0]), "three words in the first line");
    require(words[2] == "HTTP/1.1" || words[2] == "HTTP/1.0", "the version");
    require(words[0] == (head.request.isHead ? "HEAD" : head.request.method), "the request method");
    require(words[1].endsWith(head.request.target) || head.request.target == "/", "the address");

    QMap<QByteArray, QByteArrayList> fields;
    for (const QByteArray &line : qAsConst(lines)) {
        const int colon = line.indexOf(':');
        require(colon > 0 && isToken(line.left(colon)), "a name before the colon");
        fields[line.left(colon).toLower()].append(trimmed(line.mid(colon + 1)));
    }
    require(!fields.contains("transfer-encoding"), "no coding");
    for (const char *name : {"content-length", "host", "authorization", "content-type"})
        require(fields.value(name).size() <= 1, "a header that may occur once");
    require(fields.value("content-length").value(0, "0").toLongLong() == head.request.bodyLength,
            "the length");
    require(head.request.bodyLength <= MaxBodyBytes, "the bound of the length");
    require(words[2] == "HTTP/1.0" || fields.contains("host"), "a host");
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        if (field.key() != "host")
            require(head.request.headers.value(field.key()) == field->join(", "),
                    "the value of a header");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A conversation hands over what ends with the first empty line.
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    QByteArray text = input + "\r\n\r\n";
    text.truncate(text.indexOf("\r\n\r\n") + 4);
    try {
        compare(text, parseRequestHead({text.constData(), size_t(text.size())}, MaxBodyBytes));
    } catch (const HttpError &error) {
        require(error.status() >= 400 && error.status() < 500, "a refusal");
    }
    return 0;
}
