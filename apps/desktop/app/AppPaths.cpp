#include <desktop/app/AppPaths.h>

#include <QStandardPaths>

namespace desktop {

namespace {

AppPaths in(const QString &config, const QString &data)
{
    return {config + QStringLiteral("/settings.ini"), config + QStringLiteral("/connections.json"),
            data + QStringLiteral("/transfers"),      data + QStringLiteral("/opened"),
            data + QStringLiteral("/service"),        false};
}

} // namespace

AppPaths AppPaths::standard()
{
    const QString folder = QStringLiteral("/vell-desktop");
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    AppPaths paths =
        in(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + folder,
           data + folder);
    paths.ownData = data + QStringLiteral("/velldoc");
    paths.isKeyringUsed = true;
    return paths;
}

AppPaths AppPaths::below(const QString &root)
{
    return in(root, root);
}

} // namespace desktop
