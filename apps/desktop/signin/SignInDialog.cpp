#include <desktop/signin/SignInDialog.h>

#include <desktop/signin/CertificateDialog.h>
#include <desktop/signin/CertificateProbe.h>
#include <desktop/signin/ConnectionStore.h>
#include <desktop/signin/Connector.h>
#include <desktop/signin/ErrorAdvice.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace desktop {

SignInDialog::SignInDialog(Connector *connector, ConnectionStore *store, QWidget *parent)
    : QDialog(parent), m_connector(connector), m_store(store)
{
    setWindowTitle(tr("Connect"));
    setMinimumWidth(480);
    buildForm();
    fillList();
    connect(connector, &Connector::opened, this, &SignInDialog::onOpened);
    connect(connector, &Connector::projectNeeded, this, &SignInDialog::showProjects);
    connect(connector, &Connector::failed, this, &SignInDialog::showError);
}

void SignInDialog::buildForm()
{
    auto *const layout = new QVBoxLayout(this);
    m_form = new QFormLayout;
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addLayout(m_form);

    m_list = new QComboBox;
    m_list->setObjectName(QStringLiteral("connections"));
    m_forget = new QPushButton(tr("&Forget"));
    m_forget->setToolTip(tr("Removes the connection and its token from this computer"));
    m_forget->setAutoDefault(false);
    auto *const listRow = new QHBoxLayout;
    listRow->addWidget(m_list, 1);
    listRow->addWidget(m_forget);
    addRow(tr("C&onnection"), listRow, m_list);
    connect(m_list, QOverload<int>::of(&QComboBox::activated), this, &SignInDialog::choose);
    connect(m_forget, &QPushButton::clicked, this, &SignInDialog::forget);

    m_address = new QLineEdit;
    m_address->setObjectName(QStringLiteral("address"));
    m_address->setPlaceholderText(QStringLiteral("https://documents.example.com/"));
    m_form->addRow(tr("&Address"), m_address);
    m_token = new QLineEdit;
    m_token->setObjectName(QStringLiteral("token"));
    m_token->setEchoMode(QLineEdit::Password);
    m_token->setPlaceholderText(tr("Empty for a service without users"));
    m_form->addRow(tr("Access &token"), m_token);
    addFile();
    m_proxy = new QLineEdit;
    m_proxy->setObjectName(QStringLiteral("proxy"));
    m_proxy->setPlaceholderText(tr("The proxy of the system"));
    m_form->addRow(tr("Pro&xy"), m_proxy);
    m_project = new QComboBox;
    m_project->setObjectName(QStringLiteral("project"));
    m_form->addRow(tr("&Project"), m_project);
    m_remember = new QCheckBox(tr("&Remember this connection on this computer"));
    m_remember->setChecked(true);
    layout->addWidget(m_remember);

    m_message = new QLabel;
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setForegroundRole(QPalette::BrightText);
    m_message->hide();
    layout->addWidget(m_message);
    m_certificate = new QPushButton(tr("&Show Certificate…"));
    m_certificate->setObjectName(QStringLiteral("certificate"));
    m_certificate->setAutoDefault(false);
    m_certificate->hide();
    layout->addWidget(m_certificate, 0, Qt::AlignLeft);
    connect(m_certificate, &QPushButton::clicked, this, &SignInDialog::lookAtCertificate);
    layout->addStretch();

    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_connect = buttons->addButton(tr("Co&nnect"), QDialogButtonBox::AcceptRole);
    m_connect->setObjectName(QStringLiteral("connect"));
    m_connect->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &SignInDialog::signIn);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    setBusy(false);
    m_address->setFocus();
}

void SignInDialog::addRow(const QString &text, QLayout *row, QWidget *field)
{
    auto *const label = new QLabel(text);
    label->setBuddy(field);
    m_form->addRow(label, row);
}

void SignInDialog::addFile()
{
    m_authority = new QLineEdit;
    m_authority->setObjectName(QStringLiteral("authority"));
    m_authority->setPlaceholderText(tr("Only the authorities of the system"));
    auto *const browse = new QPushButton(tr("&Browse…"));
    browse->setAutoDefault(false);
    auto *const row = new QHBoxLayout;
    row->addWidget(m_authority, 1);
    row->addWidget(browse);
    addRow(tr("Additional aut&hority"), row, m_authority);
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getOpenFileName(
            this, tr("Certificate of the Authority"), m_authority->text(),
            tr("Certificates (*.pem *.crt *.cer);;All files (*)"));
        if (!path.isEmpty())
            m_authority->setText(path);
    });
}

void SignInDialog::fillList()
{
    m_list->clear();
    m_list->addItem(tr("New connection"));
    if (EmbeddedService::isAvailable()) {
        SavedConnection own;
        own.isOwn = true;
        m_list->addItem(own.title(), QVariant::fromValue(own));
    }
    const QList<SavedConnection> saved = m_store->connections();
    for (const SavedConnection &connection : saved) {
        if (!connection.isOwn)
            m_list->addItem(connection.title(), QVariant::fromValue(connection));
    }
    choose(0);
}

void SignInDialog::choose(int row)
{
    const auto connection = m_list->itemData(row).value<SavedConnection>();
    m_address->setText(connection.address);
    m_token->setText(connection.token);
    if (connection.isTokenInVault) {
        const QPointer<SignInDialog> self(this);
        m_store->withToken(connection, [self](const SavedConnection &whole) {
            if (self && self->m_list->currentData().value<SavedConnection>().id == whole.id)
                self->m_token->setText(whole.token);
        });
    }
    m_authority->setText(connection.caCertificates);
    m_proxy->setText(connection.proxy);
    for (QWidget *const field :
         {static_cast<QWidget *>(m_address), static_cast<QWidget *>(m_token)})
        field->setEnabled(!connection.isOwn);
    m_forget->setEnabled(!connection.id.isEmpty());
    m_message->hide();
    m_certificate->hide();
    m_isChoosingProject = false;
    setBusy(false);
}

void SignInDialog::fill(const SavedConnection &connection)
{
    for (int row = 0; row < m_list->count(); ++row) {
        const auto other = m_list->itemData(row).value<SavedConnection>();
        if ((connection.isOwn && other.isOwn)
            || (!connection.id.isEmpty() && other.id == connection.id)) {
            m_list->setCurrentIndex(row);
            choose(row);
            return;
        }
    }
    m_address->setText(connection.address);
    m_token->setText(connection.token);
    m_authority->setText(connection.caCertificates);
    m_proxy->setText(connection.proxy);
}

void SignInDialog::forget()
{
    const auto connection = m_list->currentData().value<SavedConnection>();
    if (!m_store->remove(connection.id)) {
        m_message->setText(tr("The file with the connections cannot be written."));
        m_message->show();
        return;
    }
    fillList();
}

SavedConnection SignInDialog::entered() const
{
    auto connection = m_list->currentData().value<SavedConnection>();
    connection.address = m_address->text().trimmed();
    connection.token = m_token->text().trimmed();
    connection.caCertificates = m_authority->text().trimmed();
    connection.proxy = m_proxy->text().trimmed();
    return connection;
}

void SignInDialog::signIn()
{
    if (m_isChoosingProject) {
        m_connector->chooseProject(m_project->currentData().toString());
        return;
    }
    setBusy(true);
    m_message->hide();
    m_certificate->hide();
    m_connector->open(entered());
}

void SignInDialog::showProjects()
{
    setBusy(false);
    m_isChoosingProject = true;
    m_project->clear();
    const QList<VellProject> projects = m_connector->session()->user().projects;
    for (const VellProject &project : projects)
        m_project->addItem(project.name.isEmpty() ? project.id : project.name, project.id);
    setBusy(false);
    m_project->setFocus();
}

void SignInDialog::onOpened(const SavedConnection &connection)
{
    setBusy(false);
    m_isChoosingProject = false;
    if (m_remember->isChecked() && m_store->save(connection).isEmpty()) {
        m_message->setText(
            tr("You are connected, but the connection cannot be saved: the file with the "
               "connections cannot be written. Clear the check box to continue without saving."));
        m_message->show();
        return;
    }
    accept();
}

void SignInDialog::showError(const VellError &error)
{
    setBusy(false);
    m_message->setText(ErrorAdvice::fullText(error));
    m_message->show();
    m_certificate->setVisible(ErrorAdvice::isCuredByTrust(error) && QSslSocket::supportsSsl());
    if (error.kind == VellError::Kind::NotSignedIn)
        m_token->setFocus();
    else if (error.kind == VellError::Kind::BadAddress)
        m_address->setFocus();
}

void SignInDialog::lookAtCertificate()
{
    m_certificate->setEnabled(false);
    auto *const probe = new CertificateProbe(this);
    const QUrl address(m_address->text().trimmed());
    connect(probe, &CertificateProbe::fetched, this, [=](const QList<QSslCertificate> &chain) {
        probe->deleteLater();
        m_certificate->setEnabled(true);
        if (chain.isEmpty()) {
            m_message->setText(tr("The server no longer sends its certificate."));
            return;
        }
        auto *const dialog = new CertificateDialog(address.host(), chain, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::accepted, this, [this, dialog] {
            const QString path = m_store->saveAuthority(
                dialog->authority().toPem(), CertificateDialog::fingerprint(dialog->authority()));
            if (path.isEmpty()) {
                m_message->setText(tr("The certificate cannot be saved on this computer."));
                return;
            }
            m_authority->setText(path);
            signIn();
        });
        dialog->open();
    });
    probe->start(address);
}

void SignInDialog::setBusy(bool isBusy)
{
    m_connect->setEnabled(!isBusy);
    m_connect->setText(isBusy                    ? tr("Connecting…")
                           : m_isChoosingProject ? tr("&Open Project")
                                                 : tr("Co&nnect"));
    m_project->setVisible(m_isChoosingProject);
    m_form->labelForField(m_project)->setVisible(m_isChoosingProject);
}

} // namespace desktop
