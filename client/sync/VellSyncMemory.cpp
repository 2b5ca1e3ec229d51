#include <sync/VellSyncMemory.h>

#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

constexpr quint32 Format = 0x56534d31;

//! Returns true if the two files of \a step can only be compared by their contents.
bool hasEqualSizes(const VellSyncStep &step)
{
    using Reason = VellSyncStep::Reason;
    return !step.isFolder && !step.document._id.isEmpty()
        && (step.reason == Reason::Same || step.reason == Reason::SourceIsNewer);
}

} // namespace

VellSyncMemory::VellSyncMemory(const QString &path) : m_path(path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_5_15);
    quint32 format = 0;
    int count = 0;
    stream >> format >> count;
    if (format != Format)
        return;
    for (; count > 0 && stream.status() == QDataStream::Ok; --count) {
        QString name;
        State state;
        stream >> name >> state.sizeBytes >> state.changedAtMs >> state.fileId;
        if (stream.status() == QDataStream::Ok)
            m_states.insert(name, state);
    }
}

VellSyncMemory::State VellSyncMemory::stateOf(const QString &localPath, const QString &fileId)
{
    const QFileInfo info(localPath);
    return {info.size(), info.lastModified().toMSecsSinceEpoch(), fileId};
}

bool VellSyncMemory::isSame(const State &a, const State &b)
{
    return a.sizeBytes == b.sizeBytes && a.changedAtMs == b.changedAtMs && a.fileId == b.fileId;
}

//! For a step whose files have equal sizes.
bool VellSyncMemory::isDoubtful(const VellSyncStep &step, const State &now) const
{
    const auto known = m_states.constFind(step.path);
    if (known != m_states.cend())
        return !isSame(*known, now);
    return step.reason == VellSyncStep::Reason::SourceIsNewer;
}

QStringList VellSyncMemory::settleKnown(VellSyncPlan &plan)
{
    QStringList doubtful;
    for (VellSyncStep &step : plan.steps) {
        if (!hasEqualSizes(step))
            continue;
        const State now = stateOf(step.localPath, step.document.fileId);
        if (isDoubtful(step, now)) {
            doubtful.append(step.localPath);
            continue;
        }
        m_noted.insert(step.path, now);
        step.action = VellSyncStep::Action::Leave;
        step.reason = VellSyncStep::Reason::Same;
        step.sizeBytes = 0;
    }
    return doubtful;
}

void VellSyncMemory::settle(VellSyncPlan &plan, const QHash<QString, QString> &contentIds)
{
    const bool isUp = plan.options.direction == VellSyncDirection::Up;
    for (VellSyncStep &step : plan.steps) {
        if (!hasEqualSizes(step) || m_noted.contains(step.path))
            continue;
        const QFileInfo info(step.localPath);
        const QString content = contentIds.value(step.localPath);
        const bool isEqual =
            info.size() == 0 || (!content.isEmpty() && content == step.document.fileId);
        step.action = isEqual ? VellSyncStep::Action::Leave : VellSyncStep::Action::Replace;
        step.reason = isEqual ? VellSyncStep::Reason::Same : VellSyncStep::Reason::OtherContent;
        step.sizeBytes = isEqual ? 0 : info.size();
        const QDateTime local = info.lastModified();
        const QDateTime remote = step.document.updatedAt;
        step.isTargetNewer = !isEqual && (isUp ? remote > local : local > remote);
    }
}

void VellSyncMemory::noteSame(const VellSyncPlan &plan)
{
    for (const VellSyncStep &step : plan.steps) {
        const bool isSame =
            step.action == VellSyncStep::Action::Leave && step.reason == VellSyncStep::Reason::Same;
        if (isSame && !step.isFolder && !m_noted.contains(step.path))
            note(step.path, step.localPath, step.document.fileId);
    }
}

void VellSyncMemory::note(const QString &path, const QString &localPath, const QString &fileId)
{
    m_noted.insert(path, stateOf(localPath, fileId));
}

bool VellSyncMemory::save() const
{
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << Format << int(m_noted.size());
    for (auto it = m_noted.cbegin(); it != m_noted.cend(); ++it)
        stream << it.key() << it->sizeBytes << it->changedAtMs << it->fileId;
    return stream.status() == QDataStream::Ok && file.commit();
}
