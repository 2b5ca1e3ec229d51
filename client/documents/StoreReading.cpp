#include <documents/StoreReading.h>

#include <documents/StoreContent.h>
#include <documents/VellDocumentStore.h>

#include <algorithm>
#include <iterator>

std::shared_ptr<const StoreReading> StoreReading::begin(VellDocumentStore *store)
{
    return std::shared_ptr<const StoreReading>(new StoreReading(store));
}

StoreReading::StoreReading(VellDocumentStore *store)
    : m_store(store), m_start(store->m_content->changeNumber)
{
    ++store->m_content->readingCount;
}

StoreReading::~StoreReading()
{
    if (m_store && --m_store->m_content->readingCount == 0)
        m_store->m_content->changes.clear();
}

bool StoreReading::isOld(const VellDocument &document) const
{
    return m_store && m_store->m_content->changes.value(document._id) > m_start;
}

void StoreReading::renew(VellDocument &document) const
{
    if (isOld(document))
        document = m_store->document(document._id).value_or(document);
}

void StoreReading::renew(QList<VellDocument> &documents) const
{
    // Does not detach the list if there is nothing to do.
    for (int i = 0; m_store && !m_store->m_content->changes.isEmpty() && i < documents.size();
         ++i) {
        if (isOld(documents.at(i)))
            renew(documents[i]);
    }
}

void StoreReading::store(QList<VellDocument> &documents) const
{
    if (!m_store)
        return;
    renew(documents);
    if (m_store->m_content->changes.isEmpty()) {
        m_store->merge(documents);
        return;
    }
    QList<VellDocument> current;
    std::copy_if(documents.cbegin(), documents.cend(), std::back_inserter(current),
                 [this](const VellDocument &document) { return !isOld(document); });
    m_store->merge(current);
}

void StoreReading::store(VellDocument &document) const
{
    QList<VellDocument> one{document};
    store(one);
    document = one.constFirst();
}
