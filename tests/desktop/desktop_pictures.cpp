#include "DesktopWorld.h"

#include <desktop/editing/VersionConflictDialog.h>
#include <desktop/settings/AppSettings.h>

#include <QBuffer>
#include <QDir>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QTreeView>
#include <QUrl>

// Makes the pictures of the manual: desktop_pictures FOLDER LANGUAGE SCHEME. Run by scripts/screenshots.

using namespace desktop;

namespace {

//! The window and what is in front of it.
void take(MainWindow *window, const QString &path)
{
    QTest::qWait(400); // animations and what is fetched for the picture
    const QPoint corner = window->frameGeometry().topLeft();
    const QPixmap picture =
        window->screen()->grabWindow(0, corner.x(), corner.y(), window->width(), window->height());
    if (!picture.save(path))
        qFatal("%s cannot be written", qPrintable(path));
}

void closeDialog()
{
    if (QWidget *const dialog = QApplication::activeModalWidget())
        dialog->close();
    QTest::qWait(100);
}

QByteArray drawing()
{
    QImage image(640, 420, QImage::Format_RGB32);
    image.fill(QColor(250, 248, 240));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(40, 70, 120), 3));
    for (int span = 0; span < 4; ++span)
        painter.drawArc(20 + span * 150, 180, 150, 200, 0, 180 * 16);
    painter.drawLine(10, 180, 630, 180);
    painter.drawLine(10, 170, 630, 170);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        qFatal("usage: desktop_pictures FOLDER LANGUAGE SCHEME");
    const QDir folder(arguments.at(1));
    const bool isDark = arguments.at(3) == QLatin1String("dark");

    DesktopWorld world;
    {
        AppSettings settings(AppPaths::below(world.path(QStringLiteral("home"))).settings);
        settings.setLanguage(arguments.at(2));
        settings.setColorScheme(isDark ? AppSettings::ColorScheme::Dark
                                       : AppSettings::ColorScheme::Light);
    }
    const VellDocument drawings =
        await(world.documents.createFolder(QString(), QStringLiteral("Drawings")));
    await(world.documents.createFolder(QString(), QStringLiteral("Reports")));
    await(world.documents.createFolder(drawings._id, QStringLiteral("Level 1")));
    world.store(QStringLiteral("bridge.png"), drawing(), drawings._id);
    const VellDocument plan =
        world.store(QStringLiteral("plan.dwg"), QByteArray(150000, 'p'), drawings._id);
    world.store(QStringLiteral("A very long name that does not fit into the column of the table, "
                               "revision 12 of the second draft.docx"),
                QByteArray(20000, 'd'), drawings._id);
    world.store(QStringLiteral("结构图纸 – 第二层.dwg"), QByteArray(90000, 'z'), drawings._id);
    world.store(QStringLiteral("رسم الجسر.pdf"), QByteArray(70000, 'r'), drawings._id);
    world.store(QStringLiteral("costs.xlsx"), QByteArray(9000, 'x'), drawings._id);
    world.start();
    MainWindow *const window = world.window();
    window->resize(1100, 700);
    window->move(0, 0);
    const auto picture = [&](const char *name) {
        take(window, folder.filePath(QLatin1String(name) + QStringLiteral(".png")));
    };
    picture("first-steps");
    window->findChild<QFrame *>(QStringLiteral("firstSteps"))->hide();
    window->navigate(Location::folder(drawings._id));
    if (!QTest::qWaitFor([&] { return world.shownNames().size() == 7; }, WaitMs))
        qFatal("the folder is not shown");
    world.select({QStringLiteral("bridge.png")});
    picture("folder");
    world.action(ActionId::IconsView)->trigger();
    picture("icons");
    world.action(ActionId::DetailsView)->trigger();
    window->resize(800, 600);
    picture("small");
    window->resize(1100, 700);
    window->navigate(Location::place(Location::Kind::RecycleBin));
    picture("empty");
    SearchTerms terms;
    terms.text = QStringLiteral("dwg");
    window->navigate(Location::searched(terms));
    picture("search");
    window->navigate(Location::folder(drawings._id));
    world.program().askForConnection();
    picture("connect");
    closeDialog();
    world.action(ActionId::Settings)->trigger();
    picture("settings");
    closeDialog();
    world.select({QStringLiteral("plan.dwg")});
    world.action(ActionId::Versions)->trigger();
    picture("versions");
    closeDialog();
    world.action(ActionId::Share)->trigger();
    picture("share");
    closeDialog();
    // Two names that are taken, and one that is not.
    QStringList files;
    for (const char *const name : {"plan.dwg", "costs.xlsx", "site.zip"})
        files.append(world.makeFile(QLatin1String(name), QByteArray(40000, 'n')));
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(files.at(0)), QUrl::fromLocalFile(files.at(1)),
                     QUrl::fromLocalFile(files.at(2))});
    window->pane()->model()->dropMimeData(&dropped, Qt::CopyAction, -1, -1, {});
    QTest::qWait(1500); // the questions are gathered
    picture("conflicts");
    closeDialog();
    picture("transfers");
    VersionConflictDialog conflict(files.at(0),
                                   *world.workspace()->documents.store()->document(plan._id),
                                   QStringLiteral("anna"), window);
    conflict.open();
    picture("changed-by-two");
    conflict.close();
    world.service.stop();
    world.action(ActionId::Reload)->trigger();
    QTest::qWait(1500);
    picture("offline");
    return 0;
}
