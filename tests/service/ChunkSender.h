#pragma once

#include <support/HttpClient.h>

#include <QByteArray>

//! \brief A file in memory and what a client sends of it, chunk by chunk.
class ChunkSender
{
public:
    static constexpr int ChunkBytes = 4 * 1024 * 1024;

    //! Of \a size bytes without two equal blocks; another \a seed gives another file.
    explicit ChunkSender(int size, int seed = 0);
    //! A file that claims to be another: content and MD5 do not fit.
    ChunkSender(const QByteArray &content, const QByteArray &md5);

    const QByteArray &content() const { return m_content; }
    QString md5() const { return QString::fromLatin1(m_md5); }
    int chunkCount() const { return (m_content.size() + ChunkBytes - 1) / ChunkBytes; }
    QByteArray chunk(int index) const { return m_content.mid(index * ChunkBytes, ChunkBytes); }

    //! The form's fields for a chunk, for tests that change one.
    QList<QPair<QString, QByteArray>> form(int index) const;

    HttpAnswer send(HttpClient &client, int index) const;
    HttpAnswer record(HttpClient &client) const;

    //! Sends what the service asks for until it has all or refuses; \return the last answer.
    HttpAnswer sendAll(HttpClient &client) const;

private:
    QByteArray m_content;
    QByteArray m_md5;
};

//! An answer's counters, "saved/total".
QString counters(const HttpAnswer &answer);
