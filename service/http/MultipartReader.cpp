#include <service/http/MultipartReader.h>

#include <service/http/HttpMessages.h>

#include <QList>

#include <algorithm>

namespace service {

namespace {

constexpr int BlockBytes = 128 * 1024;
constexpr int MaxHeaderBytes = 16 * 1024;
constexpr int MaxBoundaryBytes = 200; // the format allows 70

//! The value of \a name="value" in a header, quotes and their backslashes undone; null without one.
QByteArray headerParameter(const QByteArray &header, const QByteArray &name)
{
    const QByteArray lower = header.toLower();
    int at = lower.indexOf(';');
    while (at >= 0) {
        int start = at + 1;
        while (start < header.size() && (header.at(start) == ' ' || header.at(start) == '\t'))
            ++start;
        bool isQuoted = false;
        int end = start;
        for (; end < header.size() && (isQuoted || header.at(end) != ';'); ++end) {
            if (isQuoted && header.at(end) == '\\')
                ++end;
            else if (header.at(end) == '"')
                isQuoted = !isQuoted;
        }
        end = std::min(end, header.size());
        if (lower.mid(start, name.size() + 1) == name + '=') {
            QByteArray value = header.mid(start + name.size() + 1, end - start - name.size() - 1);
            value = value.trimmed();
            if (value.startsWith('"') && value.endsWith('"') && value.size() >= 2)
                value = value.mid(1, value.size() - 2);
            return value.replace("\\\"", "\"").replace("\\\\", "\\");
        }
        at = end < header.size() ? end : -1;
    }
    return {};
}

QString utf8(const QByteArray &bytes)
{
    QString text = QString::fromUtf8(bytes);
    if (text.toUtf8() != bytes)
        throw HttpError(400, QStringLiteral("A name in the form is not valid UTF-8."));
    return text;
}

} // namespace

MultipartReader::MultipartReader(BodyReader &body, const QByteArray &contentType)
    : m_body(body),
      m_buffer(QByteArrayLiteral("\r\n")) // so that a boundary at the very start is found
{
    const QByteArray boundary = headerParameter(contentType, QByteArrayLiteral("boundary"));
    if (!contentType.toLower().startsWith("multipart/form-data") || boundary.isEmpty()
        || boundary.size() > MaxBoundaryBytes) {
        throw HttpError(415, QStringLiteral("Send the file as multipart/form-data."));
    }
    m_delimiter = QByteArrayLiteral("\r\n--") + boundary;
}

bool MultipartReader::nextPart(Part &part)
{
    if (m_isInPart)
        readPart([](const char *, qint64) {});
    while (m_buffer.size() < 2)
        fill();
    if (m_buffer.startsWith("--"))
        return false;
    part = readHeaders();
    m_isInPart = true;
    return true;
}

void MultipartReader::readPart(const Sink &sink)
{
    for (;;) {
        const int end = m_buffer.indexOf(m_delimiter);
        // Without a delimiter the last bytes may be the start of one.
        const int ready = end >= 0 ? end : m_buffer.size() - (m_delimiter.size() - 1);
        if (ready > 0)
            sink(m_buffer.constData(), ready);
        if (end >= 0) {
            m_buffer.remove(0, end + m_delimiter.size());
            m_isInPart = false;
            return;
        }
        m_buffer.remove(0, std::max(0, ready));
        fill();
    }
}

QByteArray MultipartReader::readField(int limitBytes)
{
    QByteArray content;
    readPart([&content, limitBytes](const char *data, qint64 length) {
        content.append(data, static_cast<int>(length));
        if (content.size() > limitBytes)
            throw HttpError(400, QStringLiteral("A field of the form is too long."));
    });
    return content;
}

void MultipartReader::fill()
{
    const int held = m_buffer.size();
    m_buffer.resize(held + BlockBytes);
    const qint64 count = m_body.read(m_buffer.data() + held, BlockBytes);
    m_buffer.resize(held + static_cast<int>(count));
    if (count == 0)
        throw HttpError(400, QStringLiteral("The form ends before its closing boundary."));
}

MultipartReader::Part MultipartReader::readHeaders()
{
    int end = m_buffer.indexOf("\r\n\r\n");
    while (end < 0) {
        if (m_buffer.size() > MaxHeaderBytes)
            throw HttpError(400, QStringLiteral("The headers of a part of the form are too long."));
        fill();
        end = m_buffer.indexOf("\r\n\r\n");
    }
    const QByteArray headers = m_buffer.left(end);
    m_buffer.remove(0, end + 4);

    Part part;
    for (const QByteArray &line : headers.split('\n')) {
        if (!line.trimmed().toLower().startsWith("content-disposition:"))
            continue;
        part.name = utf8(headerParameter(line, QByteArrayLiteral("name")));
        part.fileName = utf8(headerParameter(line, QByteArrayLiteral("filename")));
    }
    if (part.name.isEmpty())
        throw HttpError(400, QStringLiteral("A part of the form has no name."));
    return part;
}

} // namespace service
