#pragma once

#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <QObject>

#include <memory>

//! \brief A facade of its own and a scripted server for each test function of the cache.
//!
//! Everything is looked at through getDoc(…, true) and getFolderName(), which make no request for what is cached.
class FacadeCacheTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

protected:
    static VellDocument document(const char *id, const char *name);

    void answer(const QByteArray &body, int status = 200);
    int requests() const { return m_server->requests().size(); }

    bool isCached(const char *id);
    VellDocument cached(const char *id);
    //! Empty for what is not cached.
    QString name(const char *id) { return m_data->getFolderName(QString::fromUtf8(id)); }

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<VellDocumentData> m_data;
};
