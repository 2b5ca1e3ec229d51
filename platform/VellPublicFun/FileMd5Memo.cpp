#include "FileMd5Memo.h"

#include <QFileInfo>

#include <cstdlib>

namespace {

constexpr int MostEntries = 10'000;

//! Returns true if a change at this time gives another time than \a time.
bool isApart(const QDateTime &time, const QDateTime &now)
{
    // Some file systems store times with a precision of 2 s, others with that of the system clock.
    const qint64 resolutionMs = time.time().msec() == 0 ? 2000 : 50;
    return !time.isValid() || std::abs(time.msecsTo(now)) > resolutionMs;
}

} // namespace

FileState FileState::of(const QString &path)
{
    const QFileInfo info(path);
    FileState state;
    state.path = info.canonicalFilePath();
    state.sizeBytes = info.size();
    state.modifiedAt = info.lastModified();
    state.changedAt = info.metadataChangeTime();
    state.createdAt = info.birthTime();
    const QDateTime now = QDateTime::currentDateTime();
    state.isSettled = isApart(state.modifiedAt, now) && isApart(state.changedAt, now);
    return state;
}

FileMd5Memo &FileMd5Memo::instance()
{
    static FileMd5Memo memo;
    return memo;
}

QString FileMd5Memo::find(const FileState &state) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.constFind(state.path);
    return entry != m_entries.cend() && entry->state == state ? entry->md5 : QString();
}

void FileMd5Memo::insert(const FileState &state, const QString &md5)
{
    if (state.path.isEmpty())
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_entries.size() >= MostEntries)
        m_entries.erase(m_entries.begin());
    m_entries.insert(state.path, {state, md5});
}
