#pragma once

#include <transfer/VellTransferQueue.h>

#include <QDialog>
#include <QHash>

class QCheckBox;
class QTreeWidget;
class QTreeWidgetItem;
class VellSession;

namespace desktop {

//! \brief Lists the transfers whose names are taken, and asks what to do about each or about all.
//!
//! Follows the queue while it is open: questions come and go. Answers are given when the dialog is accepted; one that is closed leaves
//! the questions open.
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
    void giveAnswers();

    VellTransferQueue *const m_queue;
    VellSession *const m_session;
    QTreeWidget *m_list;
    QCheckBox *m_later;
    VellConflictPolicy m_forAll = VellConflictPolicy::Ask; // what was pressed last
    QHash<qint64, QTreeWidgetItem *> m_items;
};

} // namespace desktop
