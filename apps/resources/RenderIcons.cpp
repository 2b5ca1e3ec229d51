#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>

#include <cstdio>

// Renders each SVG file of a folder to a PNG file of the same size in another folder. Run by the target
// vell_render_icons after a drawing has changed; needs the SVG plugin of Qt.
int main(int argc, char *argv[])
{
    const QGuiApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: vell_render_icons <folder of SVGs> <folder of PNGs>\n", stderr);
        return 2;
    }
    const QDir drawings(arguments.at(1));
    const QDir pictures(arguments.at(2));
    const QStringList names =
        drawings.entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QImageReader reader(drawings.filePath(name));
        const QImage image = reader.read();
        const QString target = pictures.filePath(name.chopped(3) + QStringLiteral("png"));
        if (image.isNull() || !image.save(target)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(name),
                         image.isNull() ? qPrintable(reader.errorString()) : "cannot be written");
            return 1;
        }
    }
    return 0;
}
