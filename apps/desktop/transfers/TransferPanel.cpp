#include <desktop/transfers/TransferPanel.h>

#include <desktop/actions/ButtonText.h>
#include <desktop/transfers/ElidedLabel.h>
#include <desktop/transfers/ProgressDelegate.h>
#include <desktop/transfers/TransferModel.h>

#include <QAction>
#include <QHeaderView>
#include <QLocale>
#include <QMenu>
#include <QProgressBar>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

namespace desktop {

namespace {

QString timeText(std::chrono::seconds left)
{
    const auto seconds = left.count();
    if (seconds < 60)
        return TransferPanel::tr("%n seconds left", nullptr, int(seconds));
    if (seconds < 7200)
        return TransferPanel::tr("%n minutes left", nullptr, int(seconds / 60));
    return TransferPanel::tr("%n hours left", nullptr, int(seconds / 3600));
}

} // namespace

TransferPanel::TransferPanel(VellTransferQueue *queue, QWidget *parent)
    : QWidget(parent), m_queue(queue), m_model(new TransferModel(queue, this)),
      m_list(new QTreeView), m_summary(new ElidedLabel), m_progress(new QProgressBar)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    auto *const row = new QHBoxLayout;
    auto *const bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    buildBar(bar);
    row->addWidget(bar);
    m_summary->setIndent(6);
    row->addWidget(m_summary, 1);
    m_progress->setMaximumWidth(110);
    m_progress->setAccessibleName(tr("Progress of all transfers"));
    row->addWidget(m_progress);
    layout->addLayout(row);
    m_list->setObjectName(QStringLiteral("transfers"));
    m_list->setAccessibleName(tr("Transfers"));
    m_list->setModel(m_model);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setItemDelegateForColumn(TransferModel::ProgressColumn, new ProgressDelegate(m_list));
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->setColumnWidth(TransferModel::NameColumn, 260);
    m_list->setColumnWidth(TransferModel::StateColumn, 220);
    m_list->setColumnWidth(TransferModel::ProgressColumn, 120);
    layout->addWidget(m_list, 1);
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        QMenu menu(this);
        menu.addActions({m_answer, m_pause, m_resume, m_cancel, m_retry, m_clear});
        menu.exec(m_list->viewport()->mapToGlobal(position));
    });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TransferPanel::updateState);
    for (const auto signal :
         {&VellTransferQueue::added, &VellTransferQueue::removed, &VellTransferQueue::changed})
        connect(queue, signal, this, &TransferPanel::updateState);
    connect(queue, &VellTransferQueue::idle, this, &TransferPanel::updateState);
    updateState();
}

void TransferPanel::buildBar(QToolBar *bar)
{
    const auto add = [&](const QString &text, const QString &name, const QKeySequence &key) {
        QAction *const action = bar->addAction(text);
        action->setIconText(buttonText(text));
        action->setObjectName(name);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(action);
        return action;
    };
    m_answer = add(tr("&Answer…"), QStringLiteral("answer"), Qt::Key_Return);
    m_pause = add(tr("&Pause"), QStringLiteral("pause"), Qt::CTRL + Qt::Key_P);
    m_resume = add(tr("&Resume"), QStringLiteral("resume"), Qt::CTRL + Qt::Key_G);
    m_retry = add(tr("&Try Again"), QStringLiteral("retry"), Qt::CTRL + Qt::Key_T);
    m_cancel = add(tr("&Cancel"), QStringLiteral("cancel"), Qt::Key_Delete);
    m_clear = add(tr("C&lear Finished"), QStringLiteral("clear"), Qt::CTRL + Qt::Key_Delete);
    connect(m_answer, &QAction::triggered, this, &TransferPanel::answerRequested);
    connect(m_pause, &QAction::triggered, this,
            [this] { forSelected(&VellTransferQueue::pause, &VellTransferQueue::pauseAll); });
    connect(m_resume, &QAction::triggered, this,
            [this] { forSelected(&VellTransferQueue::resume, &VellTransferQueue::resumeAll); });
    connect(m_cancel, &QAction::triggered, this,
            [this] { forSelected(&VellTransferQueue::cancel, &VellTransferQueue::cancelAll); });
    connect(m_retry, &QAction::triggered, this,
            [this] { forSelected(&VellTransferQueue::retry, &VellTransferQueue::retryAll); });
    connect(m_clear, &QAction::triggered, m_queue, &VellTransferQueue::removeEnded);
}

void TransferPanel::forSelected(void (VellTransferQueue::*one)(qint64),
                                void (VellTransferQueue::*all)())
{
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        (m_queue->*all)();
        return;
    }
    for (const QModelIndex &row : rows)
        (m_queue->*one)(row.data(TransferModel::IdRole).toLongLong());
}

int TransferPanel::percent() const
{
    const VellTransferTotals totals = m_queue->totals();
    return totals.totalBytes <= 0 ? 0 : int(totals.doneBytes * 100 / totals.totalBytes);
}

QString TransferPanel::summary() const
{
    const VellTransferTotals totals = m_queue->totals();
    const int open = totals.openCount();
    if (open == 0)
        return {};
    const QLocale locale;
    QStringList parts{tr("%n transfers", nullptr, open)};
    parts.append(tr("%1 of %2")
                     .arg(locale.formattedDataSize(totals.doneBytes),
                          locale.formattedDataSize(totals.totalBytes)));
    const int moving = open - totals.count(VellTransferState::Waiting)
        - totals.count(VellTransferState::Asking) - totals.count(VellTransferState::Paused);
    if (moving > 0 && totals.bytesPerSecond > 0)
        parts.append(tr("%1/s").arg(locale.formattedDataSize(totals.bytesPerSecond)));
    if (moving > 0 && totals.timeLeft)
        parts.append(timeText(*totals.timeLeft));
    if (totals.count(VellTransferState::Asking) > 0)
        parts.append(tr("%n need your answer", nullptr, totals.count(VellTransferState::Asking)));
    return parts.join(QStringLiteral(" · "));
}

void TransferPanel::updateState()
{
    using State = VellTransferState;
    const VellTransferTotals totals = m_queue->totals();
    const int paused = totals.count(State::Paused);
    const int ended =
        totals.count(State::Done) + totals.count(State::Failed) + totals.count(State::Cancelled);
    const bool isOne = m_list->selectionModel()->hasSelection();
    m_answer->setEnabled(totals.count(State::Asking) > 0);
    m_pause->setEnabled(totals.openCount() > paused);
    m_resume->setEnabled(paused > 0);
    m_cancel->setEnabled(totals.openCount() > 0);
    m_retry->setEnabled(totals.count(State::Failed) > 0
                        || (isOne && totals.count(State::Cancelled) > 0));
    m_clear->setEnabled(ended > 0);
    m_pause->setToolTip(isOne ? tr("Pause the selected transfers") : tr("Pause all"));
    m_resume->setToolTip(isOne ? tr("Resume the selected transfers") : tr("Resume all"));
    m_cancel->setToolTip(isOne ? tr("Cancel the selected transfers") : tr("Cancel all"));
    m_retry->setToolTip(isOne ? tr("Try the selected transfers again")
                              : tr("Try all failed transfers again"));
    const QString text = summary();
    m_summary->setText(text.isEmpty() ? tr("There are no transfers.") : text);
    m_progress->setVisible(!text.isEmpty());
    m_progress->setValue(percent());
    Q_EMIT summaryChanged();
}

} // namespace desktop
