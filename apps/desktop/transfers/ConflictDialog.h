#pragma once

#include <transfer/VellTransferQueue.h>

#include <QDialog>
#include <QHash>

class QCheckBox;
class QTreeWidget;
class QTreeWidgetItem;
class VellSession;

namespace desktop {

//! \brief Lists the transfers whose names are already taken, and asks for a decision for each or for all.
//!
//! Questions are added and removed while it is open. The answers are sent to the queue when the dialog is accepted; if it is
//! closed, the questions remain open.
class ConflictDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param queue and \a session must outlive the dialog
    ConflictDialog(VellTransferQueue *queue, VellSession *session, QWidget *parent = nullptr);

private:
    void add(qint64 id);
    void drop(const QVector<qint64> &ids);
    void decideAll(VellConflictPolicy decision);
    void sendAnswers();

    VellTransferQueue *const m_queue;
    VellSession *const m_session;
    QTreeWidget *m_list;
    QCheckBox *m_later;
    VellConflictPolicy m_forAll = VellConflictPolicy::Ask; // the last pressed button
    QHash<qint64, QTreeWidgetItem *> m_items;
};

} // namespace desktop
