#include "Fuzzing.h"

#include <document_model/DocumentConversions.h>

#include <QSet>

// A tree beside the plain way, which reads the whole list again for each record.
namespace {

constexpr int MostNodes = 20'000; // repeated identifiers multiply branches

//! Attaches what \a records hold of \a parent; \a path are the identifiers down to it. False when it gets too many.
bool attach(VellDocument &parent, const QList<VellDocument> &records, QSet<QString> path,
            int &nodes)
{
    if (path.contains(parent._id))
        return true;
    path.insert(parent._id);
    const int before = parent.children.size();
    for (const VellDocument &record : records) {
        if (record.parentId == parent._id && ++nodes < MostNodes)
            parent.children.append(record);
    }
    for (int i = before; i < parent.children.size(); ++i) {
        if (!attach(parent.children[i], records, path, nodes))
            return false;
    }
    return nodes < MostNodes;
}

QString textOf(const QList<VellDocument> &docs)
{
    QString text;
    for (const VellDocument &doc : docs)
        text += doc.name + QLatin1Char('(') + textOf(doc.children) + QLatin1Char(')');
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    QList<VellDocument> docs;
    while (input.remaining_bytes() > 1 && docs.size() < 24) {
        // Few identifiers, so that they meet.
        VellDocument doc;
        doc._id = QString::number(input.ConsumeIntegralInRange(0, 15));
        const int parent = input.ConsumeIntegralInRange(-3, 15);
        doc.parentId = parent < 0 ? QString() : QString::number(parent);
        doc.name = QString::number(docs.size());
        docs.append(doc);
    }

    QList<VellDocument> roots;
    for (const VellDocument &doc : qAsConst(docs)) {
        if (doc.parentId.isEmpty())
            roots.append(doc);
    }
    int nodes = 0;
    for (VellDocument &root : roots) {
        if (!attach(root, docs, {}, nodes))
            return 0;
    }
    VellPubDoc::makeDocListTree(docs);
    require(textOf(docs) == textOf(roots), "the same tree");
    return 0;
}
