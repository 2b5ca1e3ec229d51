#include <desktop/transfers/ConflictDialog.h>

#include <session/VellSession.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>

#include <algorithm>

namespace desktop {

namespace {

enum Column {
    NameColumn,
    SourceColumn,
    TargetColumn,
    DecisionColumn,
};

constexpr int LongestName = 260; // pixels

QString describe(qint64 bytes, const QDateTime &changedAt)
{
    const QLocale locale;
    return locale.formattedDataSize(bytes) + QStringLiteral(", ")
        + locale.toString(changedAt.toLocalTime(), QLocale::ShortFormat);
}

} // namespace

ConflictDialog::ConflictDialog(VellTransferQueue *queue, VellSession *session, QWidget *parent)
    : QDialog(parent), m_queue(queue), m_session(session), m_list(new QTreeWidget),
      m_later(new QCheckBox(tr("Also for &later conflicts of these transfers")))
{
    setWindowTitle(tr("Names Already Taken"));
    resize(920, 380);
    auto *const layout = new QVBoxLayout(this);
    auto *const intro = new QLabel(
        tr("The target already has entries with these names. Other transfers continue meanwhile."));
    intro->setWordWrap(true);
    layout->addWidget(intro);
    m_list->setObjectName(QStringLiteral("conflicts"));
    m_list->setAccessibleName(tr("Names already taken"));
    m_list->setHeaderLabels({tr("Name"), tr("New"), tr("Existing"), tr("Action")});
    m_list->setRootIsDecorated(false);
    layout->addWidget(m_list, 1);
    auto *const row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("For all:")));
    const auto addForAll = [&](const QString &text, const QString &name,
                               VellConflictPolicy decision) {
        auto *const button = new QPushButton(text);
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [=] { decideAll(decision); });
        row->addWidget(button);
    };
    addForAll(tr("&Replace"), QStringLiteral("replaceAll"), VellConflictPolicy::Replace);
    addForAll(tr("&Keep Both"), QStringLiteral("keepAll"), VellConflictPolicy::KeepBoth);
    addForAll(tr("&Skip"), QStringLiteral("skipAll"), VellConflictPolicy::Skip);
    addForAll(tr("Replace If &Newer"), QStringLiteral("newerAll"), VellConflictPolicy::NewerOnly);
    row->addStretch();
    layout->addLayout(row);
    m_later->setObjectName(QStringLiteral("later"));
    m_later->setEnabled(false);
    layout->addWidget(m_later);
    auto *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Decide &Later"));
    connect(buttons, &QDialogButtonBox::accepted, this, &ConflictDialog::sendAnswers);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    const QVector<qint64> ids = queue->ids();
    for (const qint64 id : ids)
        add(id);
    m_list->header()->resizeSections(QHeaderView::ResizeToContents);
    m_list->setColumnWidth(NameColumn, std::min(m_list->columnWidth(NameColumn), LongestName));
    connect(queue, &VellTransferQueue::asked, this,
            [this](const VellTransferQuestion &question) { add(question.id); });
    connect(queue, &VellTransferQueue::changed, this, &ConflictDialog::drop);
    connect(queue, &VellTransferQueue::removed, this, &ConflictDialog::drop);
}

void ConflictDialog::add(qint64 id)
{
    const VellTransferQuestion question = m_queue->question(id);
    if (question.id == 0)
        return;
    delete m_items.take(id);
    const VellTransfer transfer = m_queue->transfer(id);
    const QFileInfo local(question.localPath);
    const VellDocument &remote = question.existing;
    const QString here = describe(local.size(), local.lastModified());
    QString there = describe(remote.fileSize, remote.updatedAt);
    if (!remote.updatedBy.isEmpty())
        there += QStringLiteral(", ") + m_session->userName(remote.updatedBy);
    const bool isUpload = transfer.direction == VellTransferDirection::Upload;
    auto *const item = new QTreeWidgetItem(m_list);
    item->setText(NameColumn, transfer.name);
    item->setToolTip(NameColumn, question.localPath);
    item->setText(SourceColumn, isUpload ? here : there);
    item->setText(TargetColumn, isUpload ? there : here);
    auto *const decision = new QComboBox;
    decision->setAccessibleName(tr("Action for %1").arg(transfer.name));
    if (question.canReplace) {
        decision->addItem(isUpload ? tr("New version") : tr("Replace"),
                          int(VellConflictPolicy::Replace));
        decision->addItem(tr("Replace if newer"), int(VellConflictPolicy::NewerOnly));
    }
    decision->addItem(tr("Keep both: %1").arg(question.freeName),
                      int(VellConflictPolicy::KeepBoth));
    decision->addItem(tr("Skip"), int(VellConflictPolicy::Skip));
    // The decision that loses nothing.
    decision->setCurrentIndex(decision->findData(int(VellConflictPolicy::KeepBoth)));
    m_list->setItemWidget(item, DecisionColumn, decision);
    m_items.insert(id, item);
}

void ConflictDialog::drop(const QVector<qint64> &ids)
{
    for (const qint64 id : ids) {
        if (m_items.contains(id) && m_queue->question(id).id == 0)
            delete m_items.take(id);
    }
    if (m_items.isEmpty())
        reject();
}

void ConflictDialog::decideAll(VellConflictPolicy decision)
{
    m_forAll = decision;
    m_later->setEnabled(true);
    for (QTreeWidgetItem *const item : qAsConst(m_items)) {
        auto *const box = static_cast<QComboBox *>(m_list->itemWidget(item, DecisionColumn));
        const int row = box->findData(int(decision));
        if (row >= 0) // rows that cannot be replaced keep their decision
            box->setCurrentIndex(row);
    }
}

void ConflictDialog::sendAnswers()
{
    QHash<qint64, VellConflictPolicy> answers;
    for (auto item = m_items.cbegin(); item != m_items.cend(); ++item) {
        const auto *const box =
            static_cast<QComboBox *>(m_list->itemWidget(item.value(), DecisionColumn));
        answers.insert(item.key(), VellConflictPolicy(box->currentData().toInt()));
    }
    disconnect(m_queue, nullptr, this, nullptr);
    accept();
    // Exceptions first: an answer for all applies to all open questions of the batch.
    const bool isForLater = m_later->isChecked();
    for (auto answer = answers.cbegin(); answer != answers.cend(); ++answer) {
        if (!isForLater || answer.value() != m_forAll)
            m_queue->answer(answer.key(), answer.value());
    }
    for (auto answer = answers.cbegin(); isForLater && answer != answers.cend(); ++answer) {
        if (answer.value() == m_forAll)
            m_queue->answerAll(answer.key(), m_forAll);
    }
}

} // namespace desktop
