#pragma once

#include <transfer/VellTransferQueue.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;
class VellSession;

namespace desktop {

class ConflictDialog;

//! \brief Asks the user about names that are taken: the library's prompt for a single file, a list for batches.
class ConflictDesk : public QObject
{
    Q_OBJECT

public:
    //! \param queue, \a session and \a window must outlive this
    ConflictDesk(VellTransferQueue *queue, VellSession *session, QWidget *window);

    //! Shows the list of all open questions. Does nothing if there are none.
    void showList();

private:
    void take(const VellTransferQuestion &question);
    bool isListed() const;
    bool isAlone(qint64 id) const;
    void promptNext();
    void answer(const VellTransferQuestion &question, int button, bool isForLater);

    VellTransferQueue *const m_queue;
    VellSession *const m_session;
    QWidget *const m_window;
    QList<qint64> m_single; // to be prompted for
    QPointer<ConflictDialog> m_dialog;
    QTimer m_gather; // questions that come together are shown together
    bool m_isPrompting = false;
};

} // namespace desktop
