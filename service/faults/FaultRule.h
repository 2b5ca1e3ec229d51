#pragma once

#include <QByteArray>
#include <QString>

//! \brief How the service is to misbehave, and on which requests.
//!
//! Qt's HTTP client sends a request again by itself, up to three times, when the connection ends before a
//! whole head of an answer has come: the work of LoseReply is then done again. CutReply with the value 0 does it
//! once and is not repeated.
//!
//! A rule counts the requests that fit it; from the nth one on it strikes, a number of times. Where several
//! rules fit a request the first that strikes counts.
struct FaultRule
{
    enum class Kind {
        LoseReply, //!< the work is done, then the connection ends without an answer
        DropAfter, //!< the connection ends once `value` bytes of the request's body were read
        Status, //!< nothing is done; the answer has the status `value`
        Stall, //!< nothing is done and nothing answered, for `value` ms (0: until the client goes)
        Slow, //!< the answer comes `value` ms late
        CutReply, //!< the work is done; of the answer's body only `value` bytes come, then the end
        ForgetChunk, //!< of an upload by chunks: the chunk is not kept, and the answer says so
        NoRoom, //!< nothing is done; the answer says that there is no room (507)
    };

    Kind kind = Kind::Status;
    qint64 value = 0;
    QByteArray verb; //!< such as "PUT"; empty for all
    QString pathPrefix; //!< such as "/base-service/largefiles"; empty for all
    int nth = 1; //!< the first fitting request that is struck, from 1
    int times = 1; //!< how many are struck; 0 for no end

    //! Reads the form that syntax() describes; false with a sentence in \a error.
    static bool parse(const QString &specification, FaultRule *rule, QString *error);

    //! The text for a program's help.
    static QString syntax();
};
