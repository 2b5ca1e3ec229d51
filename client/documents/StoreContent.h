#pragma once

#include <documents/VellDocumentStore.h>

//! \brief What a store holds.
struct VellDocumentStore::Content
{
    QHash<QString, VellDocument> documents;

    // While documents are being requested, the number of the last change of each that has been changed or removed since.
    QHash<QString, quint64> changes;
    quint64 changeNumber = 0;
    int readingCount = 0;

    void noteChange(const QString &id)
    {
        if (readingCount > 0)
            changes.insert(id, changeNumber);
    }
};
