#include <velldoc/documents/RecycleBin.h>

#include <velldoc/program/Context.h>

#include <QHash>

namespace velldoc {

QList<VellDocument> readBin(Context &context)
{
    constexpr int PageSize = 1000;
    VellDocumentConditon condition;
    condition.category = QStringLiteral("recycle");
    Session &session = context.session();
    QList<VellDocument> documents;
    for (;;) {
        const VellPage page = session.await(
            session.documents().page(condition, VellDocumentSort(), documents.size(), PageSize));
        documents += page.documents;
        if (page.documents.isEmpty() || documents.size() >= page.total)
            return documents;
    }
}

QStringList namesInBin(Context &context)
{
    const QList<VellDocument> documents = readBin(context);
    QHash<QString, int> counts;
    for (const VellDocument &document : documents)
        ++counts[document.name];
    QStringList names;
    for (const VellDocument &document : documents)
        names.append(counts.value(document.name) == 1 ? document.name
                                                      : QLatin1String("id:") + document._id);
    return names;
}

} // namespace velldoc
