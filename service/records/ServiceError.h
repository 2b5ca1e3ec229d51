#pragma once

#include <QString>

#include <stdexcept>

namespace service {

//! Why a request is refused.
enum class Refusal {
    Invalid, //!< the input is invalid
    Forbidden, //!< the user's role does not allow it
    NotFound, //!< the object does not exist, or the user may not know of it
    Conflict, //!< valid, but not possible in the present state
    Gone, //!< the object no longer exists
    Mismatch, //!< the bytes that have arrived are not those that were announced
};

//! \brief The request is refused; what() is a sentence for the user.
class ServiceError : public std::runtime_error
{
public:
    ServiceError(Refusal kind, const QString &sentence)
        : std::runtime_error(sentence.toStdString()), m_kind(kind)
    {}

    Refusal kind() const { return m_kind; }

private:
    Refusal m_kind;
};

} // namespace service
