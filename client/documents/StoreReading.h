#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QPointer>
#include <QtGlobal>

#include <memory>

class VellDocumentStore;

//! \brief A request for documents in progress: records that were changed meanwhile are newer than its response.
//!
//! Belongs to the thread of the store. The store may be deleted earlier.
class StoreReading
{
public:
    static std::shared_ptr<const StoreReading> begin(VellDocumentStore *store);
    ~StoreReading();
    Q_DISABLE_COPY(StoreReading)

    //! Replaces those of \a documents that have been changed in the store since begin() by the newer records.
    void renew(QList<VellDocument> &documents) const;
    void renew(VellDocument &document) const;

    //! Calls renew() and stores \a documents, except those that have been removed from the store since begin().
    void store(QList<VellDocument> &documents) const;
    void store(VellDocument &document) const;

private:
    explicit StoreReading(VellDocumentStore *store);
    bool isOld(const VellDocument &document) const;

    const QPointer<VellDocumentStore> m_store;
    const quint64 m_start;
};
