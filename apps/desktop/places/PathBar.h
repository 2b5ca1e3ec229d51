#pragma once

#include <document_model/VellDocument.h>

#include <QPointer>
#include <QStackedWidget>
#include <QStringList>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class VellDocuments;
class VellOperation;

namespace desktop {

//! \brief Shows the path of the open folder as buttons, and lets the user type a path.
class PathBar : public QStackedWidget
{
    Q_OBJECT

public:
    //! \param documents must outlive the bar
    explicit PathBar(VellDocuments *documents, QWidget *parent = nullptr);

    //! Shows the path of the folder \a id; the folders above it are requested.
    //! \param rootTitle the name of the top level
    void showFolder(const QString &id, const QString &rootTitle);

    //! Shows a place that is not a folder.
    void showTitle(const QString &title);

    //! Returns the path of the folder, such as "/Drawings/Level 1"; "/" for the top level and other places.
    QString path() const;

    //! Lets the user type a path. Enter opens it, Escape returns.
    void edit();

Q_SIGNALS:
    void folderRequested(const QString &id);

    //! The typed path is that of the file \a document.
    void documentRequested(const VellDocument &document);

    //! The user has left the input line.
    void editingEnded();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showFolders(const QList<VellDocument> &folders);
    void addButton(const QString &text, const QString &id);
    void open();
    void openNext(const QString &folderId, QStringList names);
    void refuse(const QString &text);
    void endEditing();

    VellDocuments *const m_documents;
    QHBoxLayout *m_buttons;
    QLineEdit *m_line;
    QString m_rootTitle;
    QList<VellDocument> m_folders; // of the buttons
    QPointer<VellOperation> m_request;
};

} // namespace desktop
