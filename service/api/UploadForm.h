#pragma once

#include <service/http/MultipartParser.h>
#include <service/http/Router.h>

#include <QHash>
#include <QStringList>

#include <functional>

namespace service {

//! \brief A form with one part "file", whose bytes are handed on as they come, and some short fields.
class UploadForm final : public BodySink, private MultipartParser::Receiver
{
public:
    using TakeBytes = std::function<void(const char *data, qint64 length)>;
    using Finish = std::function<HttpResponse(const UploadForm &form)>;

    //! \param fields those that are kept; others are read and forgotten
    //! \param takeBytes gets the content of the file \param finish responds once the form is whole
    UploadForm(const HttpRequest &request, const QStringList &fields, TakeBytes takeBytes,
               Finish finish);

    QString fileName() const { return m_fileName; } //!< as the part says it; may be empty
    QString field(const char *name) const { return m_fields.value(QLatin1String(name)); }

    void write(const char *data, qint64 length) override;
    HttpResponse finish() override;

private:
    void beginPart(const MultipartParser::Part &part) override;
    void partContent(const char *data, qint64 length) override;
    void endPart() override;

    const QStringList m_knownFields;
    const TakeBytes m_takeBytes;
    const Finish m_finish;
    MultipartParser m_parser;
    bool m_hasFile = false;
    QString m_fileName;
    QHash<QString, QString> m_fields;
    QString m_partName; //!< of the part that is coming
    QByteArray m_value; //!< of the field that is coming
};

} // namespace service
