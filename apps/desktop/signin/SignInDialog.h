#pragma once

#include <desktop/signin/SavedConnection.h>

#include <QDialog>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace desktop {

class ConnectionStore;
class Connector;

//! \brief Asks for a service, a token and a project, and connects. Accepted when the project is open.
//!
//! Saved connections are in a list. Errors are shown inside the dialog, with advice.
class SignInDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param connector and \a store must outlive the dialog
    SignInDialog(Connector *connector, ConnectionStore *store, QWidget *parent = nullptr);

    //! Fills in \a connection.
    void fill(const SavedConnection &connection);

    //! Shows the error of an earlier connection.
    void showError(const VellError &error);

    //! Asks for the project to be opened.
    void showProjects();

private:
    void buildForm();
    void addRow(const QString &text, QLayout *row, QWidget *field);
    void addFile();
    void fillList();
    void choose(int row);
    void forget();
    void signIn();
    void onOpened(const SavedConnection &connection);
    void lookAtCertificate();
    void setBusy(bool isBusy);
    SavedConnection entered() const;

    Connector *const m_connector;
    ConnectionStore *const m_store;
    QFormLayout *m_form = nullptr;
    QComboBox *m_list = nullptr;
    QPushButton *m_forget = nullptr;
    QLineEdit *m_address = nullptr;
    QLineEdit *m_token = nullptr;
    QComboBox *m_project = nullptr;
    QLineEdit *m_authority = nullptr;
    QLineEdit *m_proxy = nullptr;
    QCheckBox *m_remember = nullptr;
    QLabel *m_message = nullptr;
    QPushButton *m_certificate = nullptr;
    QPushButton *m_connect = nullptr;
    bool m_isChoosingProject = false;
};

} // namespace desktop
