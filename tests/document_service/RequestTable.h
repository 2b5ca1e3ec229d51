#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

#include <functional>
#include <vector>

//! How a request function judges the reply.
enum class Judged {
    ByStatus, //!< nothing of the body is read
    ByContent, //!< the body is the answer, whatever the status
    ByBoth, //!< the body is read, and the status is the result
};

//! What one request function sends and answers.
struct RequestRow
{
    const char *name = nullptr;
    //! Calls the function and tells its result: what the body gave, for ByBoth followed by
    //! ", true" or ", false"; for ByStatus only that word.
    std::function<QString()> call;
    QByteArray verb;
    QString target; //!< behind the base address, decoded
    QByteArray body;
    Judged judged = Judged::ByStatus;
    QByteArray reply; //!< a good reply's body
    QString fromReply; //!< what that body gives
    QString fromNothing; //!< what an empty or unreadable body gives
};

//! Adds one test row for each of \a rows and each kind of reply: success, an error status with and without
//! a body, an empty body, a body of the wrong shape, no connection.
void addRequestRows(const std::vector<RequestRow> &rows);

//! Runs the current row against a scripted server; fails the current test when anything differs.
void checkRequestRow();

//! "true" or "false".
QString word(bool value);

Q_DECLARE_METATYPE(RequestRow)
