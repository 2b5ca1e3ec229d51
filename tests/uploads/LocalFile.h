#pragma once

#include <QByteArray>
#include <QString>

//! \brief A file on the client's side, in which no two blocks of 64 KiB are equal.
//!
//! Files of another \a salt have no block in common with it, so that a chunk that is put into the wrong place or file
//! never goes unnoticed. Ends the program when the disk refuses.
class LocalFile
{
public:
    static constexpr qint64 ChunkBytes = qint64(4) * 1024 * 1024;

    LocalFile(const QString &path, qint64 bytes, quint32 salt);

    QString path() const { return m_path; }
    qint64 size() const { return m_size; }

    //! What it holds now.
    QByteArray content() const;
    QByteArray md5() const;

    //! Makes it another file of the same size.
    void rewrite(quint32 salt) { rewrite(m_size, salt); }
    void rewrite(qint64 bytes, quint32 salt);

    //! Cuts it, or makes it longer by zeros.
    void resize(qint64 bytes);

    //! Changes one byte.
    void touchByte(qint64 offset);

private:
    const QString m_path;
    qint64 m_size = 0;
};
