#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace service {

//! \brief What identifies a content: clients name it by its MD5, the service compares it by its SHA-256.
struct ContentDigest
{
    QString md5; //!< 32 lower-case hexadecimal digits
    QString sha256; //!< 64 lower-case hexadecimal digits; empty when it is not known
    qint64 size = 0;
};

//! \brief Both digests of bytes that arrive piece by piece, with a state that can be stored and restored.
class ContentHash
{
public:
    ContentHash();
    ~ContentHash();
    ContentHash(ContentHash &&other) noexcept;
    ContentHash &operator=(ContentHash &&other) noexcept;

    //! Continues where state() was taken. A state of the MD5 alone, as earlier versions stored it, leaves the
    //! SHA-256 unknown. \return false for bytes that are no such state
    bool restore(const QByteArray &state);

    void add(const char *data, qint64 length);

    //! What has been added so far, for restore() in the same or another process.
    QByteArray state() const;

    //! Ends the computation.
    ContentDigest result();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

//! Returns true if \a text has the form of an MD5 as ContentHash gives it.
bool isMd5(const QString &text);

} // namespace service
