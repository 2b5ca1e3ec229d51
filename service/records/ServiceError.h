#pragma once

#include <QString>

#include <stdexcept>

namespace service {

//! Why something is refused.
enum class Refusal {
    Invalid, //!< the input makes no sense
    Forbidden, //!< the user's role does not allow it
    NotFound, //!< what is named does not exist, or not for this user
    Conflict, //!< sensible, but not in the present state
    Gone, //!< was there, and is no longer
    Mismatch, //!< the bytes that arrived are not those that were announced
};

//! \brief A request that is refused; what() is one sentence for the person who reads it.
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
