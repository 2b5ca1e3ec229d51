#pragma once

#include <QByteArray>

#include <memory>

namespace service {

class RawFile;
struct ServiceContext;

//! \brief Stores the body of a request, or a part of it, until it is complete.
//!
//! In memory as long as all bodies together are smaller than MaxHeldBytes, otherwise in a temporary file, so that many clients with
//! incomplete bodies cannot fill the memory.
class BodyBuffer
{
public:
    static constexpr qint64 MaxHeldBytes = Q_INT64_C(64) * 1024 * 1024;

    explicit BodyBuffer(ServiceContext &context);
    ~BodyBuffer();
    BodyBuffer(const BodyBuffer &) = delete;
    BodyBuffer &operator=(const BodyBuffer &) = delete;

    //! \throws StorageError
    void append(const char *data, qint64 length);
    qint64 size() const { return m_size; }
    //! Returns the body and clears the buffer. \throws StorageError
    QByteArray take();

private:
    void moveToFile();
    void clear();

    ServiceContext &m_context;
    QByteArray m_bytes;
    std::unique_ptr<RawFile> m_file; //!< instead of m_bytes
    qint64 m_size = 0;
    qint64 m_held = 0;
};

} // namespace service
