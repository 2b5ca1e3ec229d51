#include <service/http/MultipartParser.h>

#include <service/http/HttpMessages.h>

#include <QList>

#include <algorithm>
#include <cstring>

namespace service {

namespace {

constexpr int MaxHeaderBytes = 16 * 1024;
constexpr int MaxBoundaryBytes = 200; // the format allows 70

//! Returns the unquoted value of \a name="value" in a header; null if there is none.
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

MultipartParser::MultipartParser(const QByteArray &contentType, Receiver &receiver)
    : m_receiver(receiver),
      m_buffer(QByteArrayLiteral("\r\n")) // so that a boundary at the very start is found
{
    const QByteArray boundary = headerParameter(contentType, QByteArrayLiteral("boundary"));
    if (!contentType.toLower().startsWith("multipart/form-data") || boundary.isEmpty()
        || boundary.size() > MaxBoundaryBytes) {
        throw HttpError(415, QStringLiteral("Send the file as multipart/form-data."));
    }
    m_delimiter = QByteArrayLiteral("\r\n--") + boundary;
}

void MultipartParser::feed(const char *data, qint64 length)
{
    if (m_state == State::Epilogue)
        return;
    m_buffer.append(data, static_cast<int>(length));
    for (bool goesOn = true; goesOn;) {
        switch (m_state) {
        case State::Preamble:
        case State::Content:
            goesOn = readContent();
            break;
        case State::Boundary:
            goesOn = readBoundary();
            break;
        case State::Headers:
            goesOn = readHeaders();
            break;
        case State::Epilogue:
            m_buffer.clear();
            goesOn = false;
            break;
        }
    }
}

void MultipartParser::finish() const
{
    if (m_state != State::Epilogue)
        throw HttpError(400, QStringLiteral("The form ends before its closing boundary."));
}

bool MultipartParser::readContent()
{
    // QByteArray::indexOf() would take as much time as the digests of the content.
    const void *const found =
        ::memmem(m_buffer.constData(), static_cast<size_t>(m_buffer.size()),
                 m_delimiter.constData(), static_cast<size_t>(m_delimiter.size()));
    const int end = found == nullptr
        ? -1
        : static_cast<int>(static_cast<const char *>(found) - m_buffer.constData());
    // The last bytes may be the start of a delimiter.
    const int ready = end >= 0 ? end : m_buffer.size() - (m_delimiter.size() - 1);
    if (ready > 0 && m_state == State::Content)
        m_receiver.partContent(m_buffer.constData(), ready);
    if (end < 0) {
        m_buffer.remove(0, std::max(0, ready));
        return false;
    }
    m_buffer.remove(0, end + m_delimiter.size());
    if (m_state == State::Content)
        m_receiver.endPart();
    m_state = State::Boundary;
    return true;
}

bool MultipartParser::readBoundary()
{
    if (m_buffer.size() < 2)
        return false;
    m_state = m_buffer.startsWith("--") ? State::Epilogue : State::Headers;
    return true;
}

bool MultipartParser::readHeaders()
{
    const int end = m_buffer.indexOf("\r\n\r\n");
    if ((end < 0 ? m_buffer.size() : end) > MaxHeaderBytes)
        throw HttpError(400, QStringLiteral("The headers of a part of the form are too long."));
    if (end < 0)
        return false;
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
    m_state = State::Content;
    m_receiver.beginPart(part);
    return true;
}

} // namespace service
