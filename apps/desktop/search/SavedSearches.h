#pragma once

#include <desktop/search/SearchTerms.h>

#include <QList>
#include <QObject>

class VellSession;

namespace desktop {

class AppSettings;

//! A search with a name.
struct SavedSearch
{
    QString name;
    SearchTerms terms;
};

//! \brief The saved searches of the project that is open.
class SavedSearches : public QObject
{
    Q_OBJECT

public:
    //! \param settings and \a session must outlive this object
    SavedSearches(AppSettings *settings, const VellSession *session, QObject *parent = nullptr);

    //! Returns the searches in the order in which they were saved.
    QList<SavedSearch> list() const;

    //! Adds \a search, or replaces the one with the same name.
    void save(const SavedSearch &search);
    void remove(const QString &name);

Q_SIGNALS:
    //! Also emitted when another project is opened.
    void changed();

private:
    QString key() const;
    void write(const QList<SavedSearch> &searches);

    AppSettings *const m_settings;
    const VellSession *const m_session;
};

} // namespace desktop
