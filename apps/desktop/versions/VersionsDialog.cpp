#include <desktop/versions/VersionsDialog.h>

#include <desktop/window/Rights.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace desktop {

VersionsDialog::VersionsDialog(VellDocuments *documents, VellTransferQueue *queue,
                               const VellDocument &document, QWidget *parent)
    : QDialog(parent), m_documents(documents), m_queue(queue), m_document(document),
      m_list(new QTreeWidget), m_message(new QLabel)
{
    setWindowTitle(tr("Versions of “%1”").arg(document.name));
    resize(680, 360);
    auto *const layout = new QVBoxLayout(this);
    m_list->setObjectName(QStringLiteral("versions"));
    m_list->setAccessibleName(tr("Versions"));
    m_list->setHeaderLabels({tr("Version"), tr("Stored"), tr("By"), tr("Size"), tr("Remark")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setColumnWidth(1, 150);
    layout->addWidget(m_list, 1);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    layout->addWidget(m_message);
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    const auto add = [&](const QString &text, const QString &name, void (VersionsDialog::*slot)()) {
        QPushButton *const button = buttons->addButton(text, QDialogButtonBox::ActionRole);
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this, slot);
        return button;
    };
    m_fetch = add(tr("&Download…"), QStringLiteral("fetch"), &VersionsDialog::chooseTarget);
    m_current =
        add(tr("&Make Current Again"), QStringLiteral("makeCurrent"), &VersionsDialog::makeCurrent);
    m_remark = add(tr("&Remark…"), QStringLiteral("remark"), &VersionsDialog::editRemark);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &VersionsDialog::updateButtons);
    connect(documents->session(), &VellSession::userNamesChanged, this, &VersionsDialog::fill);
    connect(queue, &VellTransferQueue::ended, this, &VersionsDialog::onTransferEnded);
    updateButtons();
    reload();
}

void VersionsDialog::reload()
{
    m_message->setText(tr("Loading…"));
    m_documents->history(m_document._id)
        ->then(
            this,
            [this](const QList<VellDocument> &versions) {
                m_message->clear();
                m_versions = versions;
                fill();
            },
            [this](const VellError &error) {
                say(tr("The versions could not be loaded."), error);
            });
}

void VersionsDialog::fill()
{
    const QLocale locale;
    m_list->clear();
    for (int i = 0; i < m_versions.size(); ++i) {
        const VellDocument &version = m_versions.at(i);
        const int number = m_versions.size() - i;
        new QTreeWidgetItem(m_list,
                            {i == 0 ? tr("%1 (current)").arg(number) : QString::number(number),
                             locale.toString(version.createdAt.toLocalTime(), QLocale::ShortFormat),
                             m_documents->session()->userName(version.createdBy),
                             locale.formattedDataSize(version.fileSize), version.remark});
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));
    updateButtons();
}

VellDocument VersionsDialog::version() const
{
    return m_versions.value(m_list->indexOfTopLevelItem(m_list->currentItem()));
}

void VersionsDialog::updateButtons()
{
    const bool isAny = !version()._id.isEmpty();
    const bool isCurrent = m_list->indexOfTopLevelItem(m_list->currentItem()) == 0;
    const bool mayEdit = rights::may(m_document, rights::edit());
    const QString refusal =
        mayEdit ? QString() : tr("You may not change “%1”.").arg(m_document.name);
    m_fetch->setEnabled(isAny && rights::may(m_document, rights::download()));
    m_current->setEnabled(isAny && !isCurrent && mayEdit);
    m_remark->setEnabled(isAny && mayEdit);
    m_current->setToolTip(refusal);
    m_remark->setToolTip(refusal);
}

void VersionsDialog::say(const QString &text, const VellError &error)
{
    if (error.kind != VellError::Kind::Cancelled)
        m_message->setText(text + QLatin1Char(' ') + error.text);
}

void VersionsDialog::chooseTarget()
{
    auto *const dialog = new QFileDialog(this, tr("Download Version"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave); // the dialog asks before it replaces a file
    dialog->selectFile(m_document.name);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, chosen = version()](const QString &path) { fetch(chosen, path); });
    dialog->open();
}

void VersionsDialog::fetch(const VellDocument &version, const QString &path)
{
    m_message->setText(tr("Loading…"));
    m_fetching =
        m_queue->downloadVersion(version, path, m_queue->addBatch(VellConflictPolicy::Replace));
}

void VersionsDialog::onTransferEnded(const VellTransfer &transfer)
{
    if (transfer.id != m_fetching)
        return;
    if (transfer.state == VellTransferState::Done)
        m_message->setText(tr("It has been saved as %1.").arg(transfer.localPath));
    else
        say(tr("The version could not be downloaded."), transfer.error);
}

void VersionsDialog::makeCurrent()
{
    m_documents->makeCurrent(m_document._id, version().fileId)
        ->then(
            this,
            [this](const VellDocument &document) {
                m_document = document;
                reload();
            },
            [this](const VellError &error) {
                say(tr("The version could not be made current."), error);
            });
}

void VersionsDialog::editRemark()
{
    const VellDocument chosen = version();
    auto *const dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Remark"));
    dialog->setLabelText(tr("Remark on this version:"));
    dialog->setTextValue(chosen.remark);
    connect(dialog, &QInputDialog::textValueSelected, this, [this, chosen](const QString &text) {
        m_documents->setVersionRemark(chosen._id, text)
            ->then(
                this, [this](bool) { reload(); },
                [this](const VellError &error) {
                    say(tr("The remark could not be saved."), error);
                });
    });
    dialog->open();
}

} // namespace desktop
