#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

#include <mutex>

//! \brief What tells one state of a file from another without reading it.
struct FileState
{
    //! That of the file at \a path at this moment; its path is empty if there is none.
    static FileState of(const QString &path);

    QString path; //!< without links, so that all ways to a file are one
    qint64 sizeBytes = 0;
    QDateTime modifiedAt;
    QDateTime
        changedAt; //!< of its entry in the file system; a file put in its place has another one
    QDateTime createdAt; //!< invalid where the file system does not know it
    bool isSettled = false; //!< a change made from now on gives other times

    bool operator==(const FileState &other) const
    {
        return path == other.path && sizeBytes == other.sizeBytes && modifiedAt == other.modifiedAt
            && changedAt == other.changedAt && createdAt == other.createdAt;
    }
};

//! \brief The MD5 of files that have been read before. Thread-safe.
class FileMd5Memo
{
public:
    static FileMd5Memo &instance();

    //! Empty if it is not known for this state.
    QString find(const FileState &state) const;
    void insert(const FileState &state, const QString &md5);

private:
    struct Entry
    {
        FileState state;
        QString md5;
    };

    mutable std::mutex m_mutex;
    QHash<QString, Entry> m_entries; // by path
};
