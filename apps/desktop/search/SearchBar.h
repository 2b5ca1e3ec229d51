#pragma once

#include <desktop/search/SearchTerms.h>

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;
class VellDocuments;

namespace desktop {

//! \brief The line in which the user searches, with a row of filters below the path bar.
//!
//! Two widgets, so that the line is in the tool bar and the filters above the list.
class SearchBar : public QWidget
{
    Q_OBJECT

public:
    //! \param documents must outlive the bar
    explicit SearchBar(VellDocuments *documents, QWidget *parent = nullptr);

    //! The line, for the tool bar. It belongs to whoever it is given to.
    QLineEdit *line() const { return m_line; }

    //! The folder below which is searched if the user wants so; empty at the top level.
    void setFolder(const QString &id);

    //! Shows \a terms without searching.
    void showTerms(const SearchTerms &terms);

    //! Empties the line and the filters, without a search.
    void reset();

Q_SIGNALS:
    //! The user has changed something, and stopped for a moment.
    void searched(const desktop::SearchTerms &terms);
    //! The user looks for nothing any more.
    void left();
    //! The user wants to find \a terms among the places.
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
