#include <service/api/UploadForm.h>

#include <service/http/HttpMessages.h>

#include <utility>

namespace service {

namespace {

constexpr int MaxFieldBytes = 4096;

} // namespace

UploadForm::UploadForm(const HttpRequest &request, const QStringList &fields, TakeBytes takeBytes,
                       Finish finish)
    : m_knownFields(fields), m_takeBytes(std::move(takeBytes)), m_finish(std::move(finish)),
      m_parser(request.header("content-type"), *this)
{}

void UploadForm::write(const char *data, qint64 length)
{
    m_parser.feed(data, length);
}

HttpResponse UploadForm::finish()
{
    m_parser.finish();
    if (!m_hasFile)
        throw HttpError(400, QStringLiteral("The form has no \"file\"."));
    return m_finish(*this);
}

void UploadForm::beginPart(const MultipartParser::Part &part)
{
    m_partName = part.name;
    if (part.name != QLatin1String("file"))
        return;
    if (m_hasFile)
        throw HttpError(400, QStringLiteral("The form has more than one \"file\"."));
    m_hasFile = true;
    m_fileName = part.fileName;
}

void UploadForm::partContent(const char *data, qint64 length)
{
    if (m_partName == QLatin1String("file")) {
        m_takeBytes(data, length);
    } else if (m_knownFields.contains(m_partName)) {
        if (m_value.size() + length > MaxFieldBytes)
            throw HttpError(400, QStringLiteral("A field of the form is too long."));
        m_value.append(data, static_cast<int>(length));
    }
}

void UploadForm::endPart()
{
    if (m_knownFields.contains(m_partName))
        m_fields.insert(m_partName, QString::fromUtf8(m_value));
    m_value.clear();
}

} // namespace service
