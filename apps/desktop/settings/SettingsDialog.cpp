#include <desktop/settings/SettingsDialog.h>

#include <desktop/settings/AppSettings.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>

namespace desktop {

SettingsDialog::SettingsDialog(AppSettings *settings, QWidget *parent)
    : QDialog(parent), m_settings(settings), m_language(new QComboBox), m_scheme(new QComboBox),
      m_saving(new QCheckBox(tr("Store changed files as a new &version without asking")))
{
    using Scheme = AppSettings::ColorScheme;
    setWindowTitle(tr("Settings"));
    auto *const form = new QFormLayout(this);
    m_language->setObjectName(QStringLiteral("language"));
    m_language->addItem(tr("Language of the system"), QString());
    m_language->addItem(QStringLiteral("English"), QStringLiteral("en"));
    m_language->addItem(QStringLiteral("简体中文"), QStringLiteral("zh_CN"));
    m_language->setCurrentIndex(m_language->findData(settings->language()));
    form->addRow(tr("&Language"), m_language);
    m_scheme->setObjectName(QStringLiteral("scheme"));
    m_scheme->addItem(tr("Colours of the system"), int(Scheme::System));
    m_scheme->addItem(tr("Light"), int(Scheme::Light));
    m_scheme->addItem(tr("Dark"), int(Scheme::Dark));
    m_scheme->setCurrentIndex(m_scheme->findData(int(settings->colorScheme())));
    form->addRow(tr("&Colours"), m_scheme);
    m_saving->setChecked(settings->isSavedWithoutAsking());
    form->addRow(m_saving);
    auto *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

void SettingsDialog::accept()
{
    m_settings->setLanguage(m_language->currentData().toString());
    m_settings->setColorScheme(AppSettings::ColorScheme(m_scheme->currentData().toInt()));
    m_settings->setSavedWithoutAsking(m_saving->isChecked());
    QDialog::accept();
}

} // namespace desktop
