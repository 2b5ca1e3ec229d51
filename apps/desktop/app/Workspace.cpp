#include <desktop/app/Workspace.h>

#include <QDir>
#include <QFileInfo>

namespace desktop {

Workspace::Workspace(const AppPaths &appPaths, QObject *parent)
    : QObject(parent), paths(appPaths), settings(appPaths.settings),
      connections(appPaths.connections, appPaths.isKeyringUsed ? TokenVault::ofSystem() : nullptr),
      documents(&session), connector(&session, appPaths.ownData), changes(&documents),
      edited(&documents, &queue, appPaths.opened), searches(&settings, &session), dragged(&queue)
{
    QDir().mkpath(QFileInfo(paths.transfers).path());
    connect(&queue, &VellTransferQueue::openFailed, this, &Workspace::transfersNotKept);
    queue.open(paths.transfers);
    queue.attach(&documents);
}

} // namespace desktop
