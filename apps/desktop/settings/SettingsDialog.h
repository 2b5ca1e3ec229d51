#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;

namespace desktop {

class AppSettings;

//! \brief Language, colours and behaviour. Accepting stores the settings; the caller applies them.
class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param settings must outlive the dialog
    explicit SettingsDialog(AppSettings *settings, QWidget *parent = nullptr);

    void accept() override;

private:
    AppSettings *const m_settings;
    QComboBox *m_language;
    QComboBox *m_scheme;
    QCheckBox *m_saving;
};

} // namespace desktop
