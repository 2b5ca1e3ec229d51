#pragma once

#include <transfer/TransferRun.h>

#include <QCryptographicHash>
#include <QFile>

//! \brief One attempt at a download: of a content, or of a folder, which creates the local folder and lists the entries.
class DownloadRun : public TransferRun
{
public:
    DownloadRun(TransferTask task, TransferHub &hub);

private:
    void work() override;
    void cleanUp() override;
    VellDocument source();
    void downloadFile(const VellDocument &document);

    // The local file, DownloadTarget.cpp
    bool decide(const VellDocument &document);
    bool ask(const VellDocument &document, bool hasChanged);
    void requireRegularFile(const QString &path);
    void makeFolder(const QString &path);
    QString freePath();
    bool moveToTarget();

    // Its content, DownloadReceiving.cpp
    void receive(const VellDocument &document);
    void openPart(qint64 wantedBytes);
    bool receiveMore(const QString &url);
    void receiveData(class QNetworkReply *reply);
    void readHead(QNetworkReply *reply);
    void requireRoom(qint64 bytes);
    void startOver();
    void verify(const VellDocument &document);
    [[noreturn]] void failWriting();

    // DownloadFolder.cpp
    void downloadFolder(const VellDocument &folder);
    QList<VellDocument> entriesOf(const VellDocument &folder);

    QString m_target;
    ReplaceBase m_base; // the existing file at the target; not set if there is none
    QFile m_part;
    QCryptographicHash m_hash{QCryptographicHash::Md5};
    bool m_isHeadRead = false;
    std::optional<VellError> m_failure; // of writing, set in a slot
};
