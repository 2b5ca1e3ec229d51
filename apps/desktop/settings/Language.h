#pragma once

#include <QObject>
#include <QString>
#include <QTranslator>

#include <memory>
#include <vector>

namespace desktop {

//! \brief The translations of the program, the client layer, the library and Qt.
class Language
{
public:
    //! Installs the translations for \a code ("en", "zh_CN"; empty for the language of the system), and removes earlier ones.
    //! Widgets receive QEvent::LanguageChange.
    void install(const QString &code);

    //! Returns the language of the system: "zh_CN" or "en".
    static QString systemCode();

private:
    void add(const QString &file, const QString &folder);

    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

} // namespace desktop
