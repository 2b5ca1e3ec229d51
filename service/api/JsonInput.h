#pragma once

#include <service/http/HttpMessages.h>

#include <QJsonDocument>
#include <QStringList>

#include <vector>

namespace service {

//! Parses the body as JSON. \throws HttpError 400 if it is anything else
QJsonDocument readJson(const HttpRequest &request);

//! Parses a query parameter as a JSON object; empty if the parameter is missing. \throws HttpError 400
QJsonObject jsonParameter(const HttpRequest &request, QLatin1String name);

//! Parses a query parameter as an integer; \a fallback if the parameter is missing. \throws HttpError 400
qint64 numberParameter(const HttpRequest &request, QLatin1String name, qint64 fallback);

//! \brief Reads the JSON object in the body of a request. All functions throw HttpError 400 with the name of the key.
class JsonInput
{
public:
    //! \param knownKeys all other keys are refused, so that a misspelt key is noticed
    JsonInput(const QJsonObject &object, const std::vector<const char *> &knownKeys);

    bool has(const char *key) const;
    //! Returns an empty string for null.
    QString text(const char *key) const;
    QString requiredText(const char *key) const;
    int integer(const char *key) const;
    bool boolean(const char *key) const;
    QJsonArray array(const char *key) const;
    QStringList texts(const char *key) const;

private:
    QJsonObject m_object;
};

} // namespace service
