#include <documents/VellDocuments.h>

#include <documents/VellDocumentStore.h>
#include <session/VellSession.h>

VellDocuments::VellDocuments(VellSession *session, QObject *parent)
    : QObject(parent), m_session(session), m_store(new VellDocumentStore(this))
{
    connect(session, &VellSession::projectChanged, m_store, &VellDocumentStore::clear);
}
