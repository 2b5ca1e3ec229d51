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

//! \brief Shows the folders on the way to the one that is open, as buttons, and takes a path that is typed.
class PathBar : public QStackedWidget
{
    Q_OBJECT

public:
    //! \param documents must outlive the bar
    explicit PathBar(VellDocuments *documents, QWidget *parent = nullptr);

    //! Shows the way to the folder \a id; the folders above are asked for.
    //! \param rootTitle the name of the top level
    void showFolder(const QString &id, const QString &rootTitle);

    //! Shows a place that is no folder.
    void showTitle(const QString &title);

    //! The path of the folder that is shown: "/Drawings/Level 1"; "/" at the top level and for other places.
    QString path() const;

    //! Lets the user type a path. Enter opens it, Escape returns.
    void edit();

Q_SIGNALS:
    void folderRequested(const QString &id);

    //! What was typed leads to the file \a document.
    void documentRequested(const VellDocument &document);

    //! The user has left the line.
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
    QList<VellDocument> m_folders; // that are shown
    QPointer<VellOperation> m_request;
};

} // namespace desktop
