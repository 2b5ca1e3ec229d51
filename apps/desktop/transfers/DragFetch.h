#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QStringList>
#include <QTemporaryDir>

class QWidget;
class VellTransferQueue;

namespace desktop {

//! \brief Downloads documents that are dragged into other programs, when these programs request the files.
//!
//! The files are kept until the program ends, because file managers copy them after the drop.
class DragFetch
{
public:
    //! \param queue must outlive this object
    explicit DragFetch(VellTransferQueue *queue) : m_queue(queue) {}

    //! Waits for the downloads, with a dialog of \a window in which they can be cancelled.
    //! \return the paths of the files and folders; an empty list if a download has failed: the list of transfers has the reason
    QStringList fetch(const QList<VellDocument> &documents, QWidget *window);

private:
    VellTransferQueue *const m_queue;
    QTemporaryDir m_folder;
    int m_count = 0;
};

} // namespace desktop
