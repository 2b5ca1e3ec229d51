#include <service/records/Names.h>

#include <service/records/ServiceError.h>

#include <algorithm>

namespace service {

namespace {

constexpr int MaxNameBytes = 255;
constexpr int MaxProjectIdBytes = 128;

bool hasControlCharacter(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.category() == QChar::Other_Control; });
}

} // namespace

void requireValidName(const QString &name)
{
    if (name.isEmpty())
        throw ServiceError(Refusal::Invalid, QStringLiteral("The name is empty."));
    if (name.toUtf8().size() > MaxNameBytes) {
        throw ServiceError(
            Refusal::Invalid,
            QStringLiteral("The name is longer than %1 bytes of UTF-8.").arg(MaxNameBytes));
    }
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        throw ServiceError(Refusal::Invalid, QStringLiteral("\".\" and \"..\" are no names."));
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("A name cannot contain \"/\" or \"\\\"."));
    if (hasControlCharacter(name) || !name.isValidUtf16())
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("The name contains a control character."));
}

void requireValidProjectId(const QString &id)
{
    if (id.isEmpty() || id.toUtf8().size() > MaxProjectIdBytes || hasControlCharacter(id)
        || id.contains(QLatin1Char('/')) || !id.isValidUtf16()) {
        throw ServiceError(Refusal::Invalid, QStringLiteral("This is no project id."));
    }
}

void requireShortText(const QString &text, const QString &what, int maxBytes)
{
    if (text.toUtf8().size() > maxBytes)
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("%1 is longer than %2 bytes.").arg(what).arg(maxBytes));
    if (text.contains(QChar(QChar::Null)) || !text.isValidUtf16())
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("%1 contains a character that is no text.").arg(what));
}

QString suffixOf(const QString &name)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.mid(dot + 1) : QString();
}

} // namespace service
