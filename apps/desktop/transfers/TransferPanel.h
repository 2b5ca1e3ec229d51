#pragma once

#include <QWidget>

class QProgressBar;
class QToolBar;
class QTreeView;
class QAction;
class VellTransferQueue;

namespace desktop {

class ElidedLabel;
class TransferModel;

//! \brief The transfers, their totals and commands.
//!
//! A command applies to the selected transfers, or to all if none is selected.
class TransferPanel : public QWidget
{
    Q_OBJECT

public:
    //! \param queue must outlive the panel
    explicit TransferPanel(VellTransferQueue *queue, QWidget *parent = nullptr);

    //! Returns one line about all transfers; empty if all have ended.
    QString summary() const;

    //! Returns the progress of all transfers that have not failed, 0 to 100.
    int percent() const;

Q_SIGNALS:
    //! The user wants to answer the open questions.
    void answerRequested();
    void summaryChanged();

private:
    void buildBar(QToolBar *bar);
    void forSelected(void (VellTransferQueue::*one)(qint64), void (VellTransferQueue::*all)());
    void updateState();

    VellTransferQueue *const m_queue;
    TransferModel *m_model;
    QTreeView *m_list;
    ElidedLabel *m_summary;
    QProgressBar *m_progress;
    QAction *m_pause = nullptr;
    QAction *m_resume = nullptr;
    QAction *m_cancel = nullptr;
    QAction *m_retry = nullptr;
    QAction *m_answer = nullptr;
    QAction *m_clear = nullptr;
};

} // namespace desktop
