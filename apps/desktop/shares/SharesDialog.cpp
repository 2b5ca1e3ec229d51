#include <desktop/shares/SharesDialog.h>

#include <session/VellSession.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace desktop {

SharesDialog::SharesDialog(VellDocuments *documents, QWidget *parent)
    : QDialog(parent), m_documents(documents), m_list(new QTreeWidget), m_message(new QLabel)
{
    setWindowTitle(tr("Shares of the Project"));
    resize(680, 340);
    auto *const layout = new QVBoxLayout(this);
    m_list->setObjectName(QStringLiteral("shares"));
    m_list->setAccessibleName(tr("Shares"));
    m_list->setHeaderLabels(
        {tr("Documents"), tr("Created"), tr("By"), tr("Expires"), tr("Download")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setColumnWidth(0, 220);
    m_list->setColumnWidth(1, 130);
    m_list->setColumnWidth(3, 130);
    layout->addWidget(m_list, 1);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    layout->addWidget(m_message);
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_revoke = buttons->addButton(tr("&Revoke"), QDialogButtonBox::ActionRole);
    m_revoke->setObjectName(QStringLiteral("revoke"));
    connect(m_revoke, &QPushButton::clicked, this, &SharesDialog::revoke);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    connect(m_list, &QTreeWidget::currentItemChanged, this,
            [this] { m_revoke->setEnabled(m_list->currentItem() != nullptr); });
    connect(documents->session(), &VellSession::userNamesChanged, this, &SharesDialog::fill);
    m_revoke->setEnabled(false);
    reload();
}

void SharesDialog::reload()
{
    m_message->setText(tr("Loading…"));
    m_documents->shares()->then(
        this,
        [this](const QList<VellShare> &shares) {
            m_shares = shares;
            fill();
            m_message->setText(shares.isEmpty() ? tr("There are no shares.") : QString());
        },
        [this](const VellError &error) {
            m_message->setText(tr("The shares could not be loaded.") + QLatin1Char(' ')
                               + error.text);
        });
}

void SharesDialog::fill()
{
    const QLocale locale;
    const auto time = [&locale](const QDateTime &moment) {
        return locale.toString(moment.toLocalTime(), QLocale::ShortFormat);
    };
    m_list->clear();
    for (const VellShare &share : qAsConst(m_shares)) {
        QStringList names;
        for (const VellDocument &document : share.documents)
            names.append(document.name);
        new QTreeWidgetItem(m_list,
                            {names.join(QStringLiteral(", ")), time(share.createdAt),
                             m_documents->session()->userName(share.createdBy),
                             share.expiresAt.isValid() ? time(share.expiresAt) : tr("Never"),
                             share.isDownloadAllowed ? tr("Yes") : tr("No")});
    }
}

void SharesDialog::revoke()
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem());
    if (row < 0)
        return;
    m_revoke->setEnabled(false);
    m_documents->revokeShare(m_shares.at(row).id)
        ->then(
            this, [this](bool) { reload(); },
            [this](const VellError &error) {
                m_revoke->setEnabled(true);
                m_message->setText(tr("The share could not be revoked.") + QLatin1Char(' ')
                                   + error.text);
            });
}

} // namespace desktop
