#pragma once

#include <service/http/HttpMessages.h>

#include <QJsonDocument>
#include <QStringList>

#include <vector>

namespace service {

//! The body as JSON. \throws HttpError 400 for anything else
QJsonDocument readJson(const HttpRequest &request);

//! A parameter of the query that holds a JSON object; empty without it. \throws HttpError 400
QJsonObject jsonParameter(const HttpRequest &request, QLatin1String name);

//! A parameter that holds a whole number; \a fallback without it. \throws HttpError 400
qint64 numberParameter(const HttpRequest &request, QLatin1String name, qint64 fallback);

//! \brief The object of a request's body, read key by key. All functions throw HttpError 400 that names
//! the key.
class JsonInput
{
public:
    //! \param knownKeys others are refused, so that a misspelt key is not silently without effect
    JsonInput(const QJsonObject &object, const std::vector<const char *> &knownKeys);

    bool has(const char *key) const;
    //! Null counts as empty.
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
