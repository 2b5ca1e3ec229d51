#pragma once

#include <operations/VellError.h>
#include <vellclient_export.h>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <chrono>
#include <functional>

class VellDocumentModel;
class VellDocuments;
class VellFolderModel;
class VellOperation;
struct VellPage;

//! \brief Polls the service for changes of other users, and updates the store.
//!
//! Each round requests, for one folder after the other, the number of entries and the documents that have changed since the
//! previous round. Changed documents are stored in the VellDocumentStore, and its folderChanged() is emitted, so that models
//! fetch their rows again. A folder takes two small requests. Only folders that the models show are polled.
//!
//! Models of searches, marks and the recycle bin are not updated: call their reload(). There are no requests while the session is
//! offline; a round starts as soon as it is online again. Belongs to the thread of the session.
//!
//! \since 0.1
//! \sa VellDocumentStore
class VELLCLIENT_EXPORT VellChangePoll : public QObject
{
    Q_OBJECT

public:
    //! \param documents must not be null, and must outlive this object
    explicit VellChangePoll(VellDocuments *documents, QObject *parent = nullptr);
    ~VellChangePoll() override;

    //! Sets the time from the end of a round to the start of the next. The default is 30 s.
    void setInterval(std::chrono::milliseconds interval);

    //! Polls the folders that \a model shows, until it is deleted.
    void follow(VellDocumentModel *model);
    void follow(VellFolderModel *model);

    //! Starts polling. The first round starts after the interval.
    void start();

    //! Stops polling.
    void stop();

    //! Starts a round now, unless one is running or the session is not online.
    void poll();

Q_SIGNALS:
    //! A round has ended.
    void polled();

    //! The requests for the folder \a folderId have failed. The next round repeats them.
    void pollFailed(const QString &folderId, const VellError &error);

private:
    //! The state of a folder in the last round.
    struct Seen
    {
        int total = 0;
        QHash<QString, QDateTime> newest; // latest changes, by identifier
        QDateTime until; // time of the latest change
    };

    void reset();
    void askNext();
    void ask(const QString &folderId, int skip, int limit);
    void compare(const QString &folderId, const VellPage &page);
    void endRound();

    VellDocuments *const m_documents;
    QVector<std::function<QStringList()>> m_folders; // of each model
    QHash<QString, Seen> m_seen;
    QStringList m_queue; // remaining folders of the round
    QPointer<VellOperation> m_request;
    Seen m_next; // of the present folder
    bool m_isChanged = false; // the present folder
    bool m_isStarted = false;
    QTimer m_timer;
};
