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

//! \brief Asks the user about names that are already taken: with the prompt of the library for a single file, and a list for batches.
class ConflictDesk : public QObject
{
    Q_OBJECT

public:
    //! \param queue, \a session and \a window must outlive this object
    ConflictDesk(VellTransferQueue *queue, VellSession *session, QWidget *window);

    //! Shows the list of all open questions. Has no effect if there are none.
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
    QList<qint64> m_single; // for the prompt
    QPointer<ConflictDialog> m_dialog;
    QTimer m_gather; // collects questions that are asked at the same time
    bool m_isPrompting = false;
};

} // namespace desktop
