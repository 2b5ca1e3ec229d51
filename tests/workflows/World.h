#pragma once

#include <document_service/VellDocumentData.h>
#include <service/ReferenceService.h>

#include <VellNetwork/NetworkFailure.h>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! \brief The library and a service of its own, in one process; the project "p1" is open.
//!
//! Every helper that makes something fails the program when the service refuses, so that a test reads as
//! the story that it tells.
class World : public QObject
{
    Q_OBJECT

public:
    World();

    //! Makes a folder and gives its identifier.
    QString makeFolder(const QString &name, const QString &parentId = QString());

    //! Uploads \a content as a new document and gives it as the service has it.
    VellDocument upload(const QString &name, const QByteArray &content,
                        const QString &parentId = QString(), const QString &category = QString());

    //! Uploads \a content as a new version of \a document.
    VellDocument uploadVersion(const VellDocument &document, const QByteArray &content);

    //! The names in a folder, in the order of \a sort; of the recycle bin with its category.
    QStringList names(const VellDocumentConditon &condition,
                      const VellDocumentSort &sort = VellDocumentSort());
    QStringList names(const QString &parentId);

    VellDocument fetch(const QString &id);

    //! The bytes that the service holds for \a document.
    QByteArray download(const VellDocument &document) const;

    //! Becomes the user with this access token.
    void becomeUser(const QString &token);

private:
    VellDocument runUpload(VellDocument record, const QByteArray &content, bool isNew);

    QTemporaryDir m_folder;

public:
    ReferenceService service;
    VellDocumentData data;
    NetworkFailure lastFailure; //!< of the latest request that failed
};

VellDocumentConditon inFolder(const QString &parentId);
VellDocumentConditon recycleBin();
VellDocumentSort sortedBy(const QString &field, Qt::SortOrder order = Qt::AscendingOrder);
