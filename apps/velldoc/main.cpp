#include <velldoc/program/CommandLine.h>
#include <velldoc/program/Language.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/system/Terminal.h>

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    velldoc::terminal::prepare();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("velldoc"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELLDOC_VERSION));
    velldoc::installLanguage();
    const velldoc::Interrupt interrupt;
    return velldoc::runCommandLine(QCoreApplication::arguments().mid(1));
}
