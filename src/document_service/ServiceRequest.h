#pragma once

#include <document_model/VellDocument.h>

#include <VellNetwork/NetworkEventLoop.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

//! The frame of every request function: where the request goes, how it is sent and waited for, how
//! lists are read. Nothing is kept between requests.
namespace VellDocService {

//! The address of \a pathTemplate on the document service. The caller fills the placeholders with
//! QString::arg(), one after another, in the order of their numbers; nothing is encoded.
QString serviceUrl(const QString &pathTemplate);

//! The same for a template that begins with "projects/%1/", which is filled with the open project.
QString projectUrl(const QString &pathTemplate);

//! The identifier of the open project, read anew for each request.
QString projectId();

//! \a id, or null where there is none: the service's word for the top level.
QJsonValue idOrNull(const QString &id);

//! \brief A request that has been sent and waited for.
//!
//! Made by get(), postJson(), putJson() or deleteResource(), which block until the reply has finished
//! while the thread's events run. Released with the reply when it goes out of scope.
class ServiceReply
{
public:
    explicit ServiceReply(QNetworkReply *reply) : m_loop(reply) { m_loop.exec(); }

    bool isSuccessful() const { return m_loop.isSuccessful(); }
    QJsonObject object() const { return m_loop.object(); }
    QList<QJsonObject> objectList() const { return m_loop.objectList(); }

    //! Reads each object of the reply's list with \a read into a fresh record behind those that
    //! \a documents holds.
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
