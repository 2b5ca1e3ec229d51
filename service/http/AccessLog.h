#pragma once

#include <QFile>
#include <QString>

#include <mutex>

namespace service {

struct ServedRequest;

//! \brief One line for each request: time, client, user, verb, path, status, bytes, milliseconds.
//!
//! Callable from any thread. Writes no query, no header and no body, so that neither names' contents
//! nor secrets get in.
class AccessLog
{
public:
    //! \param target a file that is appended to, "-" for the standard error, empty for no log
    bool open(const QString &target, QString *error);
    void write(const ServedRequest &request);
    void close();

private:
    QFile m_file;
    std::mutex m_lock;
};

} // namespace service
