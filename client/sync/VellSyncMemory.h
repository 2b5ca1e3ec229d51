#pragma once

#include <sync/VellSyncPlan.h>
#include <vellclient_export.h>

#include <QHash>
#include <QString>
#include <QStringList>

//! \brief What a local folder and a folder of the service had in common, kept in a file from one comparison to the next.
//!
//! The service knows when a document was changed, not when the local file was. With this memory a plan finds changed files in either
//! direction without reading the others:
//!
//! \code
//! VellSyncMemory memory(path);
//! const QStringList doubtful = memory.settleKnown(plan);
//! VellSyncPlan::contentIds(session, doubtful)->then(this, [=](const QHash<QString, QString> &ids) {
//!     memory.settle(plan, ids);
//!     ...                                        // does the steps
//!     memory.note(step.path, step.localPath, document.fileId);
//!     memory.save();
//! });
//! \endcode
//!
//! Only for plans that compare by VellSyncOptions::Comparison::SizeAndTime. All functions read the disk.
class VELLCLIENT_EXPORT VellSyncMemory
{
public:
    //! With what the file \a path holds; empty if it cannot be read.
    explicit VellSyncMemory(const QString &path);

    //! Leaves the steps of \a plan as they are whose two files have not been changed since they were noted.
    //! \return the absolute paths of local files of which only the content can tell whether they differ
    QStringList settleKnown(VellSyncPlan &plan);

    //! Decides about those. \param contentIds what VellSyncPlan::contentIds() says of them; files that are missing there are replaced
    void settle(VellSyncPlan &plan, const QHash<QString, QString> &contentIds);

    //! Notes the files that \a plan leaves as they are because they are the same. Those that settleKnown() has found to be so are noted
    //! already.
    void noteSame(const VellSyncPlan &plan);
    //! Notes that the local file \a localPath is, as it is now, the content \a fileId at \a path, from the root.
    void note(const QString &path, const QString &localPath, const QString &fileId);

    //! Writes the file, and the folder that it is in. \return whether that was possible
    bool save() const;

private:
    struct State
    {
        qint64 sizeBytes = -1;
        qint64 changedAtMs = 0;
        QString fileId;
    };

    static State stateOf(const QString &localPath, const QString &fileId);
    static bool isSame(const State &a, const State &b);
    bool isDoubtful(const VellSyncStep &step, const State &now) const;

    QString m_path;
    QHash<QString, State> m_states; // by path from the root
    QHash<QString, State> m_noted;
};
