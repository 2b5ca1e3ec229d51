#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QStringList>
#include <QTemporaryDir>

class QWidget;
class VellTransferQueue;

namespace desktop {

//! \brief Fetches documents that are dragged into other programs, when these ask for the files.
//!
//! What was fetched stays until the program ends, because file managers copy it after the drop.
class DragFetch
{
public:
    //! \param queue must outlive this
    explicit DragFetch(VellTransferQueue *queue) : m_queue(queue) {}

    //! Waits, with a dialog of \a window in which it can be cancelled.
    //! \return the paths of the files and folders; nothing if one could not be fetched: the list of transfers says why
    QStringList fetch(const QList<VellDocument> &documents, QWidget *window);

private:
    VellTransferQueue *const m_queue;
    QTemporaryDir m_folder;
    int m_count = 0;
};

} // namespace desktop
