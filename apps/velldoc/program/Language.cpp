#include <velldoc/program/Language.h>

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace velldoc {

namespace {

void install(const QString &file, const QString &folder)
{
    auto *const translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(file, folder))
        QCoreApplication::installTranslator(translator);
}

QString wantedLanguage()
{
#ifdef Q_OS_WIN
    // Windows has its own setting for the language, but these variables have priority if they are set.
    for (const char *const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return qEnvironmentVariable(variable);
    }
#endif
    return QLocale::system().uiLanguages().value(0);
}

} // namespace

void installLanguage()
{
    const QString own = QStringLiteral(":/velldoc/translations");
    if (wantedLanguage().startsWith(QLatin1String("zh"))) {
        install(QStringLiteral("qtbase_zh_CN"),
                QLibraryInfo::location(QLibraryInfo::TranslationsPath));
        install(QStringLiteral("VellClient_zh_CN"), own);
        install(QStringLiteral("velldoc_zh_CN"), own);
        return;
    }
    // English is a translation, too: for plurals, and because the source texts of the library are Chinese.
    install(QStringLiteral("VellDocumentData_en"), own);
    install(QStringLiteral("velldoc_en"), own);
}

} // namespace velldoc
