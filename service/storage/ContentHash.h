#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace service {

//! \brief The digests of a content: clients identify it by its MD5, the service compares it by its SHA-256.
struct ContentDigest
{
    QString md5; //!< 32 lower-case hexadecimal digits
    QString sha256; //!< 64 lower-case hexadecimal digits; empty if it is not known
    qint64 size = 0;
};

//! \brief Computes both digests of bytes that arrive piece by piece. Its state can be stored and restored.
class ContentHash
{
public:
    ContentHash();
    ~ContentHash();
    ContentHash(ContentHash &&other) noexcept;
    ContentHash &operator=(ContentHash &&other) noexcept;

    //! Continues from a result of state(). With a state of the MD5 alone, which earlier versions stored, the SHA-256 stays empty.
    //! \return false if the bytes are not a valid state
    bool restore(const QByteArray &state);

    void add(const char *data, qint64 length);

    //! Returns the state, for restore() in the same or another process.
    QByteArray state() const;

    //! Ends the computation and returns the digests.
    ContentDigest result();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

//! Returns true if \a text has the form of an MD5 as ContentHash gives it.
bool isMd5(const QString &text);

} // namespace service
