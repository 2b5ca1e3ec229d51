#pragma once

#include <QByteArray>

#include <memory>

namespace service {

//! \brief MD5 of bytes that arrive piece by piece, with a state that can be kept and taken up again.
class Md5
{
public:
    Md5();
    ~Md5();
    Md5(const Md5 &) = delete;
    Md5 &operator=(const Md5 &) = delete;

    //! Takes up where state() was taken; \return false for bytes that are no such state.
    bool restore(const QByteArray &state);

    void add(const char *data, qint64 length);

    //! What has been added so far, for restore() in the same or another process.
    QByteArray state() const;

    //! 32 lower-case hexadecimal digits; ends the computation.
    QByteArray result();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

//! Whether \a text has the form of an MD5 as result() writes it.
bool isMd5(const QString &text);

} // namespace service
