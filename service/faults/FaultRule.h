#pragma once

#include <QByteArray>
#include <QString>

//! \brief A fault that the service simulates, and the requests that it applies to.
//!
//! QNetworkAccessManager repeats a request up to three times if the connection ends before the head of the response is complete:
//! with LoseReply the request is then processed several times. With CutReply and the value 0 it is processed once and not repeated.
//!
//! A rule counts the requests that match it, and applies from the nth one on, for a number of requests. If several rules match a
//! request, the first one that applies is used.
struct FaultRule
{
    enum class Kind {
        LoseReply, //!< the request is processed, but the connection ends without a response
        DropAfter, //!< the connection ends after `value` bytes of the request's body
        Status, //!< the request is not processed; the response has the status `value`
        Stall, //!< the request is not processed, and there is no response for `value` ms (0: until the client disconnects)
        Slow, //!< the response is delayed by `value` ms
        CutReply, //!< the request is processed; the connection ends after `value` bytes of the response's body
        ForgetChunk, //!< of an upload by chunks: the chunk is not stored, and the response says so
        NoRoom, //!< the request is not processed; the response has the status 507
    };

    Kind kind = Kind::Status;
    qint64 value = 0;
    QByteArray verb; //!< the request method, such as "PUT"; empty for all
    QString pathPrefix; //!< such as "/base-service/largefiles"; empty for all
    int nth = 1; //!< the first matching request that the rule applies to, from 1
    int times = 1; //!< the number of requests that the rule applies to; 0 for all

    //! Parses the form that syntax() describes. On failure returns false and sets \a error to a sentence.
    static bool parse(const QString &specification, FaultRule *rule, QString *error);

    //! Returns the text for the help of a program.
    static QString syntax();
};
