#pragma once

#include <document_service/VellDocumentConditon.h>

#include <QDate>
#include <QString>

namespace desktop {

//! \brief The terms of a search.
struct SearchTerms
{
    // Saved searches contain the numbers of both: add new values at the end.
    enum class Kind {
        Any,
        Folders,
        Pictures,
        Office,
        Drawings,
        Media,
        Archives,
    };

    enum class Period {
        Any,
        Today,
        Week, //!< the last seven days
        Month, //!< the last 30 days
        Year, //!< the last 365 days
    };

    QString text; //!< part of the name; `*` matches any characters, `?` one
    Kind kind = Kind::Any;
    Period period = Period::Any;
    QString userId; //!< user of the last change; empty for all users
    QString
        folderId; //!< the folder that is searched with its subfolders; empty for the whole project

    //! Returns true if there is no term.
    bool isEmpty() const;

    //! Returns the condition for the request. \param today the last day of the period
    VellDocumentConditon condition(const QDate &today) const;
};

bool operator==(const SearchTerms &a, const SearchTerms &b);

} // namespace desktop
