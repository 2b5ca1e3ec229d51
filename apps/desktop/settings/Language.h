#pragma once

#include <QObject>
#include <QString>
#include <QTranslator>

#include <memory>
#include <vector>

namespace desktop {

//! \brief The texts of the program, the client layer, the library and Qt in one language.
class Language
{
public:
    //! Installs the texts of \a code ("en", "zh_CN"; empty for the language of the system) instead of those before. Widgets
    //! get QEvent::LanguageChange.
    void install(const QString &code);

    //! The language that the system asks for: "zh_CN" or "en".
    static QString systemCode();

private:
    void add(const QString &file, const QString &folder);

    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

} // namespace desktop
