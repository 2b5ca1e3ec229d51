#pragma once

#include <QFile>
#include <QString>

#include <memory>
#include <mutex>

namespace service {

struct ServedRequest;

//! \brief Writes one line for each request: time, client, user, request method, path, status, bytes, milliseconds.
//!
//! Thread-safe. Queries, headers and bodies are not logged, because they may contain secrets.
class AccessLog
{
public:
    //! \param target a file that is appended to, "-" for the standard error, empty for no log
    bool open(const QString &target, QString *error);
    //! Opens the file again, for use after a log rotation. On failure the old file stays in use.
    bool reopen(QString *error);
    void write(const ServedRequest &request);
    void close();

private:
    QString m_target;
    std::unique_ptr<QFile> m_file; //!< null for no log
    std::mutex m_lock;
};

} // namespace service
