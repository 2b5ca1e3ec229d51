#pragma once

#include <document_model/VellDocument.h>

#include <VellNetwork/NetworkEventLoop.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

//! What the request functions have in common: addresses, sending and waiting, reading lists. Stateless.
namespace VellDocService {

//! Returns the address of \a pathTemplate on the document service. The caller fills the placeholders with QString::arg(), one
//! after the other, in the order of their numbers; nothing is encoded.
QString serviceUrl(const QString &pathTemplate);

//! The same for a template that begins with "projects/%1/"; inserts the open project.
QString projectUrl(const QString &pathTemplate);

//! Returns the identifier of the project that is open now.
QString projectId();

//! Returns \a id, or null if it is empty: the top level in the form of the service.
QJsonValue idOrNull(const QString &id);

//! \brief A request that has been sent and waited for.
//!
//! Returned by get(), postJson(), putJson() and deleteResource(), which block until the reply has finished and process events
//! meanwhile. Owns the reply.
class ServiceReply
{
public:
    explicit ServiceReply(QNetworkReply *reply) : m_loop(reply) { m_loop.exec(); }

    bool isSuccessful() const { return m_loop.isSuccessful(); }
    QJsonObject object() const { return m_loop.object(); }
    QList<QJsonObject> objectList() const { return m_loop.objectList(); }

    //! Appends a record, filled by \a read, to \a documents for each object in the list of the response.
    void appendTo(QList<VellDocument> &documents,
                  void (*read)(const QJsonObject &, VellDocument &)) const;

private:
    NetworkEventLoop m_loop;
};

ServiceReply get(const QString &url);
ServiceReply postJson(const QString &url, const QJsonObject &body);
ServiceReply putJson(const QString &url, const QJsonObject &body);
ServiceReply putJson(const QString &url, const QJsonArray &body);
ServiceReply deleteResource(const QString &url);

} // namespace VellDocService
