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

//! \brief Brings the changes of other users into the store, by asking the service from time to time.
//!
//! Asks for what has changed in the folders that the models show since it asked for the last time, and for the number of their
//! entries, one folder after the other. Changed documents are entered in the store; where anything has changed, the store's
//! folderChanged() follows, so that models ask for what they show. Costs two small requests for each folder.
//!
//! Models of searches, marks and the recycle bin are not followed: call their reload(). Waits while the session is
//! offline, and asks at once when it is back. Belongs to the thread of the session.
class VELLCLIENT_EXPORT VellChangePoll : public QObject
{
    Q_OBJECT

public:
    //! \param documents must outlive the object
    explicit VellChangePoll(VellDocuments *documents, QObject *parent = nullptr);
    ~VellChangePoll() override;

    //! The time from the end of one round to the start of the next; 30 s unless set.
    void setInterval(std::chrono::milliseconds interval);

    //! Follows the folders that \a model shows, until it is deleted.
    void follow(VellDocumentModel *model);
    void follow(VellFolderModel *model);

    //! The first round begins after the interval.
    void start();
    void stop();

    //! Begins a round now, unless one is under way or the session is not online.
    void poll();

Q_SIGNALS:
    //! A round has ended.
    void polled();

    //! The folder \a folderId could not be asked about. The next round asks again.
    void pollFailed(const QString &folderId, const VellError &error);

private:
    //! The state of a folder when it was asked about.
    struct Seen
    {
        int total = 0;
        QHash<QString, QDateTime> newest; // latest changes, by identifier
        QDateTime until; // the latest change of all
    };

    void reset();
    void askNext();
    void ask(const QString &folderId, int skip, int limit);
    void compare(const QString &folderId, const VellPage &page);
    void endRound();

    VellDocuments *const m_documents;
    QVector<std::function<QStringList()>> m_folders; // of each model
    QHash<QString, Seen> m_seen;
    QStringList m_queue; // folders that are left of the round
    QPointer<VellOperation> m_request;
    Seen m_next; // of the folder that is being asked about
    bool m_isChanged = false; // the same
    bool m_isStarted = false;
    QTimer m_timer;
};
