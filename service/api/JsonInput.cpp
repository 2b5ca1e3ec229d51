#include <service/api/JsonInput.h>

#include <service/api/JsonCheck.h>

#include <algorithm>
#include <limits>

namespace service {

namespace {

[[noreturn]] void refuse(const char *key, const char *expected)
{
    throw HttpError(400,
                    QStringLiteral("\"%1\" must be %2.")
                        .arg(QString::fromLatin1(key), QString::fromLatin1(expected)));
}

//! \param refusal a message with "%1" for the reason
QJsonDocument parsed(const QByteArray &text, const QString &refusal)
{
    const char *const fault = findJsonFault(text);
    if (fault != nullptr)
        throw HttpError(400, refusal.arg(QLatin1String(fault)));
    QJsonParseError error{};
    QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw HttpError(400, refusal.arg(error.errorString()));
    return document;
}

} // namespace

QJsonDocument readJson(const HttpRequest &request)
{
    return parsed(request.body, QStringLiteral("The body is not JSON: %1."));
}

QJsonObject jsonParameter(const HttpRequest &request, QLatin1String name)
{
    if (!request.query.contains(name))
        return {};
    const QJsonDocument document =
        parsed(request.parameter(name).toUtf8(),
               QStringLiteral("The parameter %1 is not JSON: ").arg(name) + QStringLiteral("%1."));
    if (!document.isObject())
        throw HttpError(400, QStringLiteral("The parameter %1 is not a JSON object.").arg(name));
    return document.object();
}

qint64 numberParameter(const HttpRequest &request, QLatin1String name, qint64 fallback)
{
    if (!request.query.contains(name))
        return fallback;
    bool isNumber = false;
    const qint64 number = request.parameter(name).toLongLong(&isNumber);
    if (!isNumber)
        throw HttpError(400, QStringLiteral("The parameter %1 is not a whole number.").arg(name));
    return number;
}

JsonInput::JsonInput(const QJsonObject &object, const std::vector<const char *> &knownKeys)
    : m_object(object)
{
    const QStringList keys = object.keys();
    for (const QString &key : keys) {
        const bool isKnown =
            std::any_of(knownKeys.begin(), knownKeys.end(),
                        [&key](const char *known) { return key == QLatin1String(known); });
        if (!isKnown)
            throw HttpError(400,
                            QStringLiteral("The key \"%1\" is unknown here.").arg(key.left(60)));
    }
}

bool JsonInput::has(const char *key) const
{
    return m_object.contains(QLatin1String(key));
}

QString JsonInput::text(const char *key) const
{
    const QJsonValue value = m_object.value(QLatin1String(key));
    if (!value.isString() && !value.isNull() && !value.isUndefined())
        refuse(key, "text");
    return value.toString();
}

QString JsonInput::requiredText(const char *key) const
{
    if (!m_object.value(QLatin1String(key)).isString())
        refuse(key, "there, as text");
    return text(key);
}

int JsonInput::integer(const char *key) const
{
    const QJsonValue value = m_object.value(QLatin1String(key));
    const double number = value.toDouble();
    if (!value.isDouble() || number < std::numeric_limits<int>::min()
        || number > std::numeric_limits<int>::max() || number != static_cast<int>(number))
        refuse(key, "a whole number of 32 bits");
    return static_cast<int>(number);
}

bool JsonInput::boolean(const char *key) const
{
    const QJsonValue value = m_object.value(QLatin1String(key));
    if (!value.isBool())
        refuse(key, "true or false");
    return value.toBool();
}

QJsonArray JsonInput::array(const char *key) const
{
    const QJsonValue value = m_object.value(QLatin1String(key));
    if (!value.isArray())
        refuse(key, "an array");
    return value.toArray();
}

QStringList JsonInput::texts(const char *key) const
{
    QStringList texts;
    const QJsonArray values = array(key);
    for (const QJsonValue &value : values) {
        if (!value.isString())
            refuse(key, "an array of texts");
        texts.append(value.toString());
    }
    return texts;
}

} // namespace service
