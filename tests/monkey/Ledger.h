#pragma once

#include <document_model/VellDocument.h>

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

class HttpClient;
class VellDocuments;
class VellTransferQueue;

//! \brief What was stored, renamed and deleted on purpose, and whether the service has it so in the end.
class Ledger : public QObject
{
    Q_OBJECT

public:
    //! A content that nothing else has, for a file that is called \a name.
    QByteArray newContent(const QString &name, int fillBytes);

    //! Somebody deletes \a ids, with everything below.
    void noteDeleting(const QStringList &ids);
    //! Somebody moves \a ids into \a folderId; whether it was done may not be known.
    void noteMoving(const QStringList &ids, const QString &folderId);
    void noteName(const QString &id, const QString &name);

    //! Learns of the documents that a program sees, and of the uploads that it was told are done.
    void follow(VellDocuments *documents);
    void follow(VellTransferQueue *queue);

    int documentCount() const { return m_documents.size(); }

    //! Compares with what there is. \param bin what is in the recycle bin, without what lies below
    //! \return what is wrong, a sentence each
    QStringList compare(const QList<VellDocument> &present, const QList<VellDocument> &bin,
                        HttpClient *http) const;

private:
    struct Content
    {
        QString name; // of the file
        QByteArray md5;
    };
    struct Known
    {
        QSet<QString> names;
        QSet<QString> parents; // all that it has had
        bool isFolder = false;
    };

    void learn(const VellDocument &document);
    bool isDeletedOnPurpose(const QString &id, int depth = 0) const;
    QString problemOf(const VellDocument &document, HttpClient *http) const;

    QHash<int, Content> m_contents; // by their numbers
    QHash<QString, Known> m_documents;
    QSet<QString> m_deleting;
};
