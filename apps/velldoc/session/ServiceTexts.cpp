#include <velldoc/session/ServiceTexts.h>

#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

//! The messages of the service that users see most often, as it sends them.
constexpr const char *ServiceTexts[] = {
    QT_TRANSLATE_NOOP("velldoc", "No project gives you a role that allows this (%1)."),
    QT_TRANSLATE_NOOP("velldoc", "The access token is unknown."),
    QT_TRANSLATE_NOOP("velldoc", "The service has no room left."),
    QT_TRANSLATE_NOOP("velldoc", "There is no project %1."),
    QT_TRANSLATE_NOOP("velldoc", "Your role in the project does not allow this (%1)."),
};

} // namespace

QString translatedServiceText(const QString &text)
{
    const QString place = QStringLiteral("%1");
    for (const char *const known : ServiceTexts) {
        const QString pattern = QString::fromLatin1(known);
        const QString before = pattern.section(place, 0, 0);
        const QString after = pattern.section(place, 1);
        if (!pattern.contains(place) && text == pattern)
            return Text::tr(known);
        if (pattern.contains(place) && text.startsWith(before) && text.endsWith(after)) {
            const int length = text.size() - before.size() - after.size();
            return Text::tr(known).arg(text.mid(before.size(), length));
        }
    }
    return text;
}

} // namespace velldoc
