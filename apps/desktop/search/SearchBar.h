#pragma once

#include <desktop/search/SearchTerms.h>

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;
class VellDocuments;

namespace desktop {

//! \brief The search line, and a row of filters below the path bar.
//!
//! Two widgets, so that the line is in the tool bar and the filters above the list.
class SearchBar : public QWidget
{
    Q_OBJECT

public:
    //! \param documents must outlive the bar
    explicit SearchBar(VellDocuments *documents, QWidget *parent = nullptr);

    //! Returns the line, for the tool bar, which takes ownership.
    QLineEdit *line() const { return m_line; }

    //! Sets the folder for a search in the open folder; empty for the top level.
    void setFolder(const QString &id);

    //! Shows \a terms without searching.
    void showTerms(const SearchTerms &terms);

    //! Clears the line and the filters without searching.
    void reset();

Q_SIGNALS:
    //! The user has changed the search, and has paused for a moment.
    void searched(const desktop::SearchTerms &terms);
    //! The user has ended the search.
    void left();
    //! The user wants to save \a terms.
    void saveRequested(const desktop::SearchTerms &terms);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildFilters();
    void fillUsers();
    SearchTerms terms() const;
    void search();

    VellDocuments *const m_documents;
    QLineEdit *m_line;
    QComboBox *m_kind = nullptr;
    QComboBox *m_period = nullptr;
    QComboBox *m_user = nullptr;
    QCheckBox *m_below = nullptr;
    QString m_folderId;
    QTimer m_typing;
    bool m_isActive = false; // searched() has been emitted, and left() has not
};

} // namespace desktop
