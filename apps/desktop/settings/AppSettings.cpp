#include <desktop/settings/AppSettings.h>

namespace desktop {

namespace {

constexpr QLatin1String LanguageKey("language");
constexpr QLatin1String SchemeKey("colorScheme");
constexpr QLatin1String SaveKey("saveWithoutAsking");
constexpr QLatin1String FirstStepsKey("firstStepsDone");

QString stateKey(const QString &key)
{
    return QStringLiteral("state/") + key;
}

} // namespace

AppSettings::AppSettings(const QString &path) : m_file(path, QSettings::IniFormat) {}

QString AppSettings::language() const
{
    return m_file.value(LanguageKey).toString();
}

void AppSettings::setLanguage(const QString &language)
{
    m_file.setValue(LanguageKey, language);
}

AppSettings::ColorScheme AppSettings::colorScheme() const
{
    const QString name = m_file.value(SchemeKey).toString();
    if (name == QLatin1String("light"))
        return ColorScheme::Light;
    return name == QLatin1String("dark") ? ColorScheme::Dark : ColorScheme::System;
}

void AppSettings::setColorScheme(ColorScheme scheme)
{
    switch (scheme) {
    case ColorScheme::System:
        m_file.remove(SchemeKey);
        return;
    case ColorScheme::Light:
        m_file.setValue(SchemeKey, QStringLiteral("light"));
        return;
    case ColorScheme::Dark:
        m_file.setValue(SchemeKey, QStringLiteral("dark"));
        return;
    }
}

bool AppSettings::isSavedWithoutAsking() const
{
    return m_file.value(SaveKey, false).toBool();
}

void AppSettings::setSavedWithoutAsking(bool on)
{
    m_file.setValue(SaveKey, on);
}

bool AppSettings::isFirstStepsDone() const
{
    return m_file.value(FirstStepsKey, false).toBool();
}

void AppSettings::setFirstStepsDone(bool on)
{
    m_file.setValue(FirstStepsKey, on);
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
