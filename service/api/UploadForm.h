#pragma once

#include <service/http/MultipartParser.h>
#include <service/http/Router.h>

#include <QHash>
#include <QStringList>

#include <functional>

namespace service {

//! \brief Reads a form with short fields and one part "file", whose bytes are passed on as they arrive.
class UploadForm final : public BodySink, private MultipartParser::Receiver
{
public:
    using TakeBytes = std::function<void(const char *data, qint64 length)>;
    using Finish = std::function<HttpResponse(const UploadForm &form)>;

    //! \param fields names of the fields that are kept; others are ignored
    //! \param takeBytes called with the content of the file \param finish creates the response once the form is complete
    UploadForm(const HttpRequest &request, const QStringList &fields, TakeBytes takeBytes,
               Finish finish);

    QString fileName() const { return m_fileName; } //!< from the header of the part; may be empty
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
    QString m_partName; //!< of the part that is being read
    QByteArray m_value; //!< of the field that is being read
};

} // namespace service
