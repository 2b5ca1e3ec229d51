#include <desktop/app/Desktop.h>
#include <desktop/app/FreeMemory.h>

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    desktop::FreeMemory::share();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vell-desktop"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELL_DESKTOP_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("vell-desktop"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/item/Resources/item/folder.png")));
    desktop::Desktop program(desktop::StartOptions::fromArguments(QCoreApplication::arguments()));
    program.start();
    return QApplication::exec();
}
