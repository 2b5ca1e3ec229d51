#include <desktop/shares/ShareDialog.h>

#include <documents/VellDocuments.h>

#include <QCheckBox>
#include <QClipboard>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace desktop {

namespace {

constexpr int UsualDays = 7;

} // namespace

ShareDialog::ShareDialog(VellDocuments *documents, const QList<VellDocument> &shared,
                         QWidget *parent)
    : QDialog(parent), m_documents(documents), m_ends(new QCheckBox(tr("&Expires on"))),
      m_end(new QDateEdit), m_download(new QCheckBox(tr("Allow &downloads, not only viewing"))),
      m_address(new QLineEdit), m_message(new QLabel)
{
    setWindowTitle(tr("Share"));
    setMinimumWidth(460);
    for (const VellDocument &document : shared)
        m_ids.append(document._id);
    auto *const form = new QFormLayout(this);
    auto *const what = new QLabel(shared.size() == 1 ? tr("“%1”").arg(shared.constFirst().name)
                                                     : tr("%n documents", nullptr, shared.size()));
    what->setTextFormat(Qt::PlainText);
    what->setWordWrap(true);
    form->addRow(tr("Shared"), what);
    m_ends->setObjectName(QStringLiteral("ends"));
    m_ends->setChecked(true);
    m_end->setObjectName(QStringLiteral("end"));
    m_end->setAccessibleName(tr("Last day on which the share is valid"));
    m_end->setCalendarPopup(true);
    m_end->setMinimumDate(QDate::currentDate());
    m_end->setDate(QDate::currentDate().addDays(UsualDays));
    connect(m_ends, &QCheckBox::toggled, m_end, &QWidget::setEnabled);
    form->addRow(m_ends, m_end);
    m_download->setObjectName(QStringLiteral("mayDownload"));
    m_download->setChecked(true);
    form->addRow(m_download);
    m_address->setObjectName(QStringLiteral("shareAddress"));
    m_address->setReadOnly(true);
    m_address->setPlaceholderText(tr("Not created yet"));
    form->addRow(tr("&Address"), m_address);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    form->addRow(m_message);
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_make = buttons->addButton(tr("C&reate Address"), QDialogButtonBox::ActionRole);
    m_make->setObjectName(QStringLiteral("make"));
    m_make->setDefault(true);
    m_copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    m_copy->setObjectName(QStringLiteral("copy"));
    m_copy->setEnabled(false);
    connect(m_make, &QPushButton::clicked, this, &ShareDialog::make);
    connect(m_copy, &QPushButton::clicked, this, &ShareDialog::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

void ShareDialog::make()
{
    m_make->setEnabled(false);
    const QDateTime end = m_ends->isChecked() ? m_end->date().endOfDay() : QDateTime();
    m_documents->share(m_ids, end, m_download->isChecked())
        ->then(
            this,
            [this](const VellShare &share) {
                m_address->setText(share.address);
                m_address->selectAll();
                m_copy->setEnabled(true);
                m_copy->setDefault(true);
                m_message->setText(tr(
                    "The address is shown only once. Everybody who has it can see the documents."));
            },
            [this](const VellError &error) {
                m_make->setEnabled(true);
                m_message->setText(tr("The share could not be created.") + QLatin1Char(' ')
                                   + error.text);
            });
}

void ShareDialog::copy()
{
    QGuiApplication::clipboard()->setText(m_address->text());
    m_message->setText(tr("The address has been copied to the clipboard."));
}

} // namespace desktop
