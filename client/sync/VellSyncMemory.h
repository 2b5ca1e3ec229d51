#pragma once

#include <sync/VellSyncPlan.h>
#include <vellclient_export.h>

#include <QHash>
#include <QString>
#include <QStringList>

//! \brief Remembers in a file which files of a local folder and a folder of the service were equal at the last comparison.
//!
//! The service knows when a document was changed, but not when the local file was. With this class a plan finds the changed files
//! in either direction without reading the others:
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
//! Only for plans with VellSyncOptions::Comparison::SizeAndTime. All functions access the disk.
//!
//! \since 0.1
//! \sa VellSyncPlan
class VELLCLIENT_EXPORT VellSyncMemory
{
public:
    //! Reads the file at \a path. The memory is empty if that fails.
    explicit VellSyncMemory(const QString &path);

    //! Changes the steps of \a plan whose two files have not changed since they were noted to VellSyncStep::Action::Leave.
    //! \return the absolute paths of local files that can only be compared by their contents
    //! \sa settle()
    QStringList settleKnown(VellSyncPlan &plan);

    //! Decides the steps for the files that settleKnown() has returned.
    //! \param contentIds the result of VellSyncPlan::contentIds() for these files; files that it does not contain are replaced
    void settle(VellSyncPlan &plan, const QHash<QString, QString> &contentIds);

    //! Notes the files of \a plan that are equal. Files that settleKnown() has found to be equal are already noted.
    void noteSame(const VellSyncPlan &plan);

    //! Notes that the local file \a localPath in its present state has the content \a fileId. \a path starts at the root.
    void note(const QString &path, const QString &localPath, const QString &fileId);

    //! Writes the file, and creates its folder if necessary.
    //! \return true on success
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
