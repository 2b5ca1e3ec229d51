#include <desktop/settings/Language.h>

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace desktop {

namespace {

//! Texts of Qt's dialogs, because Qt's translations are not installed on every computer.
[[maybe_unused]] constexpr const char *QtTexts[] = {
    QT_TRANSLATE_NOOP("QPlatformTheme", "OK"),    QT_TRANSLATE_NOOP("QPlatformTheme", "Cancel"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Close"), QT_TRANSLATE_NOOP("QGnomeTheme", "&OK"),
    QT_TRANSLATE_NOOP("QGnomeTheme", "&Cancel"),  QT_TRANSLATE_NOOP("QGnomeTheme", "&Close"),
};

} // namespace

QString Language::systemCode()
{
    const QString wanted = QLocale::system().uiLanguages().value(0);
    return wanted.startsWith(QLatin1String("zh")) ? QStringLiteral("zh_CN") : QStringLiteral("en");
}

void Language::install(const QString &code)
{
    m_translators.clear();
    const QString own = QStringLiteral(":/vell-desktop/translations");
    const bool isChinese = (code.isEmpty() ? systemCode() : code) == QLatin1String("zh_CN");
    if (isChinese) {
        QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
        add(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::location(QLibraryInfo::TranslationsPath));
        add(QStringLiteral("VellClient_zh_CN"), own);
        add(QStringLiteral("vell-desktop_zh_CN"), own);
    } else {
        const QLocale system = QLocale::system();
        QLocale::setDefault(system.language() == QLocale::English ? system
                                                                  : QLocale(QLocale::English));
        // English is a translation, too: for plurals, and because the source texts of the library are Chinese.
        add(QStringLiteral("VellDocumentData_en"), own);
        add(QStringLiteral("vell-desktop_en"), own);
    }
}

void Language::add(const QString &file, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(file, folder))
        return;
    QCoreApplication::installTranslator(translator.get());
    m_translators.push_back(std::move(translator));
}

} // namespace desktop
