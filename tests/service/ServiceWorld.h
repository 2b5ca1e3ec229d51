#pragma once

#include <service/ReferenceService.h>
#include <support/HttpClient.h>

#include <QTemporaryDir>
#include <QVariant>

#include <memory>

//! \brief A service on a data folder of its own, and a client of it.
class ServiceWorld
{
public:
    explicit ServiceWorld(const ServiceOptions &options = {});

    //! Stops the service and starts another on the same folder; the client follows.
    bool restart();

    //! \name One request each, for what tests need all the time
    //! The id of what was made; empty when the request was refused.
    //! @{
    QString makeFolder(const QString &name, const QString &parentId = {},
                       const QString &category = "c");
    QString makeFile(const QString &name, const QString &parentId = {},
                     const QByteArray &content = QByteArrayLiteral("content"),
                     const QString &category = "c");
    QString upload(const QByteArray &content, const QString &name = "upload.bin");
    //! @}

    //! A user who is \a role in the project of the tests, which is made when it is missing. \return the token
    QString addMember(const QString &name, const QString &role);

    //! Changes the records behind the service's back, best while it is stopped.
    bool runSql(const QString &statement) const;
    //! The first value of the first row; invalid without one.
    QVariant sqlValue(const QString &query) const;

    QString dataDir() const { return m_options.dataDir; }

    //! The list for a condition and further parameters; an empty one after a refusal.
    QJsonArray list(const QJsonObject &where, const HttpClient::Parameters &parameters = {});
    QStringList names(const QJsonObject &where, const HttpClient::Parameters &parameters = {});
    QJsonObject document(const QString &id);

    //! What comes back for bytes as they stand, on a connection of its own.
    QByteArray exchange(const QByteArray &bytes) const;

    //! "document-service/…" in the project of the tests.
    static QString projectPath(const QString &rest);
    static QString documentPath(const QString &id, const QString &rest = {});
    //! {"parentId": id}, null for an empty one
    static QJsonObject below(const QString &parentId);

    QTemporaryDir folder;
    std::unique_ptr<ReferenceService> service;
    HttpClient client;
    bool isStarted = false;

private:
    ServiceOptions m_options;
};
