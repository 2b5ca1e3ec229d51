#include <desktop/settings/AppSettings.h>

namespace desktop {

namespace {

constexpr char LanguageKey[] = "language";
constexpr char SchemeKey[] = "colorScheme";
constexpr char SaveKey[] = "saveWithoutAsking";
constexpr char FirstStepsKey[] = "firstStepsDone";

QString stateKey(const QString &key)
{
    return QStringLiteral("state/") + key;
}

} // namespace

AppSettings::AppSettings(const QString &path) : m_file(path, QSettings::IniFormat) {}

QString AppSettings::language() const
{
    return m_file.value(QLatin1String(LanguageKey)).toString();
}

void AppSettings::setLanguage(const QString &language)
{
    m_file.setValue(QLatin1String(LanguageKey), language);
}

AppSettings::ColorScheme AppSettings::colorScheme() const
{
    const QString name = m_file.value(QLatin1String(SchemeKey)).toString();
    if (name == QLatin1String("light"))
        return ColorScheme::Light;
    return name == QLatin1String("dark") ? ColorScheme::Dark : ColorScheme::System;
}

void AppSettings::setColorScheme(ColorScheme scheme)
{
    switch (scheme) {
    case ColorScheme::System:
        m_file.remove(QLatin1String(SchemeKey));
        return;
    case ColorScheme::Light:
        m_file.setValue(QLatin1String(SchemeKey), QStringLiteral("light"));
        return;
    case ColorScheme::Dark:
        m_file.setValue(QLatin1String(SchemeKey), QStringLiteral("dark"));
        return;
    }
}

bool AppSettings::isSavedWithoutAsking() const
{
    return m_file.value(QLatin1String(SaveKey), false).toBool();
}

void AppSettings::setSavedWithoutAsking(bool on)
{
    m_file.setValue(QLatin1String(SaveKey), on);
}

bool AppSettings::isFirstStepsDone() const
{
    return m_file.value(QLatin1String(FirstStepsKey), false).toBool();
}

void AppSettings::setFirstStepsDone(bool on)
{
    m_file.setValue(QLatin1String(FirstStepsKey), on);
}

QByteArray AppSettings::state(const QString &key) const
{
    return m_file.value(stateKey(key)).toByteArray();
}

void AppSettings::setState(const QString &key, const QByteArray &state)
{
    m_file.setValue(stateKey(key), state);
}

} // namespace desktop
