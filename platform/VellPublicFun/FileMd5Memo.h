#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

#include <mutex>

//! \brief The state of a file, as far as it can be compared without reading the content.
struct FileState
{
    //! Returns the present state of the file at \a path; its path is empty if there is no such file.
    static FileState of(const QString &path);

    QString path; //!< canonical, without links
    qint64 sizeBytes = 0;
    QDateTime modifiedAt;
    QDateTime
        changedAt; //!< last change of its entry in the file system; differs if the file was replaced
    QDateTime createdAt; //!< invalid if the file system does not store it
    bool isSettled = false; //!< true if any later change will give other times

    bool operator==(const FileState &other) const
    {
        return path == other.path && sizeBytes == other.sizeBytes && modifiedAt == other.modifiedAt
            && changedAt == other.changedAt && createdAt == other.createdAt;
    }
};

//! \brief Stores the MD5 of files that have been read. Thread-safe.
class FileMd5Memo
{
public:
    static FileMd5Memo &instance();

    //! Returns an empty string if the MD5 is not known for this state.
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
