#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <vellclient_export.h>

#include <QMetaType>
#include <QString>

//! \brief Why something could not be done, for the program and for the person before it.
struct VELLCLIENT_EXPORT VellError
{
    enum class Kind {
        None, //!< no error
        Offline, //!< the service cannot be reached; it may return
        TimedOut, //!< reached, but nothing moved any more
        Certificate, //!< the service cannot be trusted, or does not accept the own certificate
        Proxy, //!< the proxy refuses or cannot be reached
        BadAddress, //!< the address is none, or what answers there is no document service
        NotSignedIn, //!< no token, or one that the service does not know
        NotAllowed, //!< the user has no right to do it
        NotFound,
        NameTaken,
        BadName, //!< the name cannot be that of a document, or of a local file
        NoRoom, //!< on the service's disk, or on the local one
        TooLarge, //!< a limit of the service or of a server in front of it
        ChangedMeanwhile, //!< somebody else, or another program, has changed it since it was looked at
        LocalFile, //!< a local file cannot be read or written
        Busy, //!< the service asks to come again later
        Refused, //!< the service refuses the request for a reason of its own, see #detail
        ServiceFailed, //!< the service has made a mistake
        Cancelled, //!< by the user
        Unclear, //!< a request ended without a response that tells the outcome
    };

    Kind kind = Kind::None;
    int httpStatus = 0; //!< 0 if the service did not answer
    NetworkFailure::Reason reason = NetworkFailure::Reason::
        Other; //!< what the transport knows more exactly, of a failed request
    QString text; //!< a sentence for the user, in the language of the application
    QString detail; //!< the words of the service or of the transport; may be empty

    //! Whether there is an error.
    explicit operator bool() const { return kind != Kind::None; }

    //! Whether doing the same again later can help.
    bool isTemporary() const;

    //! \param text the sentence; that of \a kind if it is empty
    static VellError of(Kind kind, const QString &text = {}, const QString &detail = {});

    //! Of a failed request.
    static VellError of(const NetworkFailure &failure);

    static VellError cancelled() { return of(Kind::Cancelled); }
};

Q_DECLARE_METATYPE(VellError)
