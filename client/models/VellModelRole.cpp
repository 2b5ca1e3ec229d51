#include <models/VellModelRole.h>

#include <document_model/VellDocument.h>

QHash<int, QByteArray> VellModelRole::names()
{
    return {{Document, "document"}, {Id, "documentId"}, {IsFolder, "isFolder"},
            {IsLoaded, "isLoaded"}, {Rights, "rights"}, {Transfer, "transfer"}};
}

QVariant VellModelRole::value(const VellDocument &document, int role)
{
    switch (role) {
    case Document:
        return QVariant::fromValue(document);
    case Id:
        return document._id;
    case IsFolder:
        return document.type == QLatin1String("dir");
    case IsLoaded:
        return true;
    case Rights: {
        QVariantMap rights;
        for (auto right = document.auths.cbegin(); right != document.auths.cend(); ++right)
            rights.insert(right.key(), right.value());
        return rights;
    }
    default:
        return {};
    }
}
