#pragma once

#include <QFile>
#include <QString>

#include <memory>
#include <mutex>

namespace service {

struct ServedRequest;

//! \brief One line for each request: time, client, user, request method, path, status, bytes, milliseconds.
//!
//! Callable from any thread. Writes no query, no header and no body, so that neither names' contents
//! nor secrets get in.
class AccessLog
{
public:
    //! \param target a file that is appended to, "-" for the standard error, empty for no log
    bool open(const QString &target, QString *error);
    //! Opens the same file again, which a log rotation has moved away; on failure the old one stays in use.
    bool reopen(QString *error);
    void write(const ServedRequest &request);
    void close();

private:
    QString m_target;
    std::unique_ptr<QFile> m_file; //!< null for no log
    std::mutex m_lock;
};

} // namespace service
