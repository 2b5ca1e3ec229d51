#include "FacadeCacheTest.h"

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

void FacadeCacheTest::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_data = std::make_unique<VellDocumentData>();
    VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
}

VellDocument FacadeCacheTest::document(const char *id, const char *name)
{
    VellDocument doc;
    doc._id = QString::fromUtf8(id);
    doc.name = QString::fromUtf8(name);
    return doc;
}

void FacadeCacheTest::answer(const QByteArray &body, int status)
{
    m_server->enqueue(ScriptedReply::json(body, status));
}

bool FacadeCacheTest::isCached(const char *id)
{
    const int before = requests();
    cached(id);
    return requests() == before;
}

VellDocument FacadeCacheTest::cached(const char *id)
{
    VellDocument doc;
    m_data->getDoc(QString::fromUtf8(id), doc, true);
    return doc;
}
