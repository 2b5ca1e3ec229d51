#include <desktop/signin/CertificateDialog.h>

#include <QCheckBox>
#include <QCryptographicHash>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace desktop {

namespace {

QString nameOf(const QStringList &commonName, const QStringList &organization)
{
    QStringList parts = commonName + organization;
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QLabel *valueLabel(const QString &text)
{
    auto *const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    return label;
}

} // namespace

CertificateDialog::CertificateDialog(const QString &host, const QList<QSslCertificate> &chain,
                                     QWidget *parent)
    : QDialog(parent), m_authority(chain.constLast())
{
    setWindowTitle(tr("Certificate of %1").arg(host));
    auto *const layout = new QVBoxLayout(this);
    auto *const intro = new QLabel(
        tr("The authority that has signed the certificate is not known on this computer. Trust it "
           "only if the administrator of the service has given you the same fingerprint."));
    intro->setWordWrap(true);
    layout->addWidget(intro);
    const auto addGroup = [&](const QString &title, const QSslCertificate &certificate) {
        auto *const group = new QGroupBox(title);
        auto *const form = new QFormLayout(group);
        form->addRow(tr("Issued to"),
                     valueLabel(nameOf(certificate.subjectInfo(QSslCertificate::CommonName),
                                       certificate.subjectInfo(QSslCertificate::Organization))));
        form->addRow(tr("Issued by"),
                     valueLabel(nameOf(certificate.issuerInfo(QSslCertificate::CommonName),
                                       certificate.issuerInfo(QSslCertificate::Organization))));
        const QLocale locale;
        form->addRow(
            tr("Valid"),
            valueLabel(tr("%1 to %2")
                           .arg(locale.toString(certificate.effectiveDate().toLocalTime().date(),
                                                QLocale::ShortFormat),
                                locale.toString(certificate.expiryDate().toLocalTime().date(),
                                                QLocale::ShortFormat))));
        QLabel *const print = valueLabel(fingerprint(certificate));
        print->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        form->addRow(tr("SHA-256"), print);
        layout->addWidget(group);
    };
    addGroup(tr("Server"), chain.constFirst());
    if (chain.size() > 1)
        addGroup(tr("Authority"), m_authority);
    auto *const compared = new QCheckBox(tr("I have &compared the fingerprint"));
    compared->setObjectName(QStringLiteral("compared"));
    layout->addWidget(compared);
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton *const trust =
        buttons->addButton(tr("&Trust This Authority"), QDialogButtonBox::AcceptRole);
    trust->setObjectName(QStringLiteral("trust"));
    trust->setEnabled(false);
    connect(compared, &QCheckBox::toggled, trust, &QWidget::setEnabled);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

QString CertificateDialog::fingerprint(const QSslCertificate &certificate)
{
    return QString::fromLatin1(certificate.digest(QCryptographicHash::Sha256).toHex(':')).toUpper();
}

} // namespace desktop
