#pragma once

#include <QString>

#include <stdexcept>

namespace service {

//! \brief A statement or the connection failed; what() names the reason as the database gave it.
class DatabaseError : public std::runtime_error
{
public:
    enum class Kind {
        Full, //!< the disk or the database has no room left
        ReadOnly, //!< the disk can be read only
        Busy, //!< another program has been writing for too long
        Damaged, //!< the file is damaged, or no database
        Lost, //!< the connection has ended; whether a change that was being committed is there is unknown
        NoConnection, //!< all connections that are allowed are in use
        BadText, //!< a text that the database cannot store
        BadPattern, //!< a regular expression that the database does not read
        SlowPattern, //!< a regular expression that took too long
        Slow, //!< a statement that took too long
        Other,
    };

    explicit DatabaseError(const QString &message, Kind kind = Kind::Other)
        : std::runtime_error(message.toStdString()), m_kind(kind)
    {}

    Kind kind() const { return m_kind; }
    bool isFull() const { return m_kind == Kind::Full; }
    bool isReadOnly() const { return m_kind == Kind::ReadOnly; }

private:
    Kind m_kind = Kind::Other;
};

} // namespace service
