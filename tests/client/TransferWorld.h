#pragma once

#include "ClientWorld.h"

#include <transfer/VellTransferQueue.h>

#include <QHash>

#include <chrono>

//! \brief A queue on the session of a ClientWorld, and a local folder.
class TransferWorld : public ClientWorld
{
public:
    TransferWorld();

    //! Makes a local file in which no two blocks are equal. \return its path
    QString makeFile(const QString &name, qint64 bytes, int salt = 0) const;
    QString path(const QString &name) const { return m_local.filePath(name); }
    static QByteArray contentOf(const QString &path);
    static void write(const QString &path, const QByteArray &content);
    //! Makes the file one that was changed so long ago; less than nothing for the future.
    static void setAge(const QString &path, std::chrono::seconds age);

    //! Waits until the transfer has ended. \return how it is then
    VellTransfer waitFor(qint64 id);
    //! Waits until the transfer is in \a state, or has ended.
    bool waitForState(qint64 id, VellTransferState state);
    //! Waits for the end of everything. \return whether it comes
    bool waitForIdle();

    //! The documents called \a name in a folder, as the service has them.
    QList<VellDocument> find(const QString &name, const QString &parentId = {});
    //! What the service has as the content of \a document.
    QByteArray download(const VellDocument &document) const;

private:
    QTemporaryDir m_local;

public:
    VellTransferQueue queue;
    QHash<qint64, int> endCounts; //!< of ended()
    QList<VellTransferQuestion> questions; //!< of asked()
};

constexpr qint64 SmallBytes = 100'000;
constexpr qint64 LargeBytes = 13'000'000; //!< four chunks
