#pragma once

#include <desktop/app/AppPaths.h>
#include <desktop/changes/DocumentChanges.h>
#include <desktop/editing/EditedFiles.h>
#include <desktop/search/SavedSearches.h>
#include <desktop/settings/AppSettings.h>
#include <desktop/signin/ConnectionStore.h>
#include <desktop/signin/Connector.h>
#include <desktop/transfers/DragFetch.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

#include <QObject>

namespace desktop {

//! \brief The objects that all windows and panels share. Exists as long as the program.
class Workspace : public QObject
{
    Q_OBJECT

public:
    explicit Workspace(const AppPaths &paths, QObject *parent = nullptr);

    const AppPaths paths;
    AppSettings settings;
    ConnectionStore connections;
    VellSession session;
    VellDocuments documents;
    VellTransferQueue queue;
    Connector connector;
    DocumentChanges changes;
    EditedFiles edited;
    SavedSearches searches;
    DragFetch dragged;

Q_SIGNALS:
    //! The list of transfers cannot be stored on the disk.
    void transfersNotKept(const VellError &error);
};

} // namespace desktop
