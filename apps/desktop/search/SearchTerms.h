#pragma once

#include <document_service/VellDocumentConditon.h>

#include <QDate>
#include <QString>

namespace desktop {

//! \brief What the user looks for.
struct SearchTerms
{
    // Saved searches keep the numbers of both: new ones go to the end.
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

    QString text; //!< part of the name; `*` and `?` stand for any characters and one
    Kind kind = Kind::Any;
    Period period = Period::Any;
    QString userId; //!< who has changed it last; empty for anybody
    QString
        folderId; //!< the folder that is searched with everything below it; empty for the whole project

    //! Returns whether there is anything to look for.
    bool isEmpty() const;

    //! The same for the service. \param today the last day of the period
    VellDocumentConditon condition(const QDate &today) const;
};

bool operator==(const SearchTerms &a, const SearchTerms &b);

} // namespace desktop
