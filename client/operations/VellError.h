#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <vellclient_export.h>

#include <QMetaType>
#include <QString>

//! \brief The error of an operation, a transfer or a session, for the program and for the user.
//!
//! \since 0.1
//! \sa VellOperation::error(), NetworkFailure
struct VELLCLIENT_EXPORT VellError
{
    //! The kind of an error, for decisions of the program.
    enum class Kind {
        None, //!< no error
        Offline, //!< the service cannot be reached
        TimedOut, //!< nothing was sent or received for the stall timeout
        Certificate, //!< the service is not trusted, or does not accept the client certificate
        Proxy, //!< the proxy cannot be reached, or refuses the request
        BadAddress, //!< the address is invalid, or is not that of a document service
        NotSignedIn, //!< there is no token, or the service does not accept it
        NotAllowed, //!< the user does not have the necessary right
        NotFound, //!< the document does not exist
        NameTaken, //!< the folder has an entry of this name
        BadName, //!< the name is not valid for a document, or for a local file
        NoRoom, //!< the disk of the service or the local disk is full
        TooLarge, //!< a limit of the service or of a server in front of it is exceeded
        ChangedMeanwhile, //!< another user or another program has changed the document or the file
        LocalFile, //!< a local file cannot be read or written
        Busy, //!< the service is overloaded; try again later
        Refused, //!< the service refuses the request for another reason, see #detail
        ServiceFailed, //!< an internal error of the service
        Cancelled, //!< cancelled by the user
        Unclear, //!< the request ended without a response that says whether it was done
    };

    Kind kind = Kind::None;
    int httpStatus = 0; //!< 0 if there was no response
    NetworkFailure::Reason reason =
        NetworkFailure::Reason::Other; //!< of a failed request: the reason in more detail
    QString text; //!< a sentence for the user, in the language of the application
    QString detail; //!< the message of the service or of the transport; may be empty

    //! Returns true if there is an error.
    explicit operator bool() const { return kind != Kind::None; }

    //! Returns true if the same operation may succeed later.
    bool isTemporary() const;

    //! Returns an error of \a kind.
    //! \param text the sentence for the user; if it is empty, the sentence for \a kind
    static VellError of(Kind kind, const QString &text = {}, const QString &detail = {});

    //! Returns the error for a failed request.
    static VellError of(const NetworkFailure &failure);

    //! Returns an error of the kind Kind::Cancelled.
    static VellError cancelled() { return of(Kind::Cancelled); }
};

Q_DECLARE_METATYPE(VellError)
