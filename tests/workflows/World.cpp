#include "World.h"

#include <async_ops/AsyncCreateDocument.h>
#include <document_model/DocumentConversions.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <support/TestDatabase.h>

#include <QEventLoop>
#include <QFile>

namespace {

ServiceOptions optionsIn(const QTemporaryDir &folder)
{
    ServiceOptions options;
    options.dataDir = folder.filePath("data");
    options.database = TestDatabase::addressFor(options.dataDir);
    return options;
}

} // namespace

World::World() : service(optionsIn(m_folder))
{
    QString error;
    if (!service.start(&error))
        qFatal("the service does not start: %s", qPrintable(error));
    VellBaseApi::GetInstance().setBaseApi(service.baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
    becomeUser(QString());
    connect(NetworkManager::instance(), &NetworkManager::requestFailed, this,
            [this](const NetworkFailure &failure) { lastFailure = failure; });
}

void World::becomeUser(const QString &token)
{
    NetworkSettings::instance().setAccessToken(token);
}

QString World::makeFolder(const QString &name, const QString &parentId)
{
    VellDocument folder;
    folder.name = name;
    folder.parentId = parentId;
    if (!data.createDocFolder(folder))
        qFatal("no folder %s: %s", qPrintable(name), qPrintable(lastFailure.message));
    return folder._id;
}

VellDocument World::upload(const QString &name, const QByteArray &content, const QString &parentId,
                           const QString &category)
{
    VellDocument record;
    record.name = name;
    record.parentId = parentId;
    record.category = category;
    return runUpload(record, content, true);
}

VellDocument World::uploadVersion(const VellDocument &document, const QByteArray &content)
{
    return runUpload(document, content, false);
}

VellDocument World::runUpload(VellDocument record, const QByteArray &content, bool isNew)
{
    QFile file(m_folder.filePath("local"));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    file.close();
    const QString name = record.name;
    VellPubDoc::getVellDocument(file.fileName(), record);
    record.name = name;

    AsyncCreateDocument job;
    QEventLoop loop;
    VellDocument stored;
    connect(&job, &AsyncCreateDocument::createDocumentFinish, &loop,
            [&](const VellDocument &document) {
                stored = document;
                loop.quit();
            });
    connect(&job, &AsyncCreateDocument::error, &loop, [&] {
        qFatal("no upload of %s: %s", qPrintable(name), qPrintable(lastFailure.message));
    });
    if (isNew)
        job.createDocument(QString(), record);
    else
        job.updateDocument(record.hostId, record);
    loop.exec();
    return stored;
}

QStringList World::names(const VellDocumentConditon &condition, const VellDocumentSort &sort)
{
    QList<VellDocument> documents;
    if (condition.category == QLatin1String("recycle"))
        data.getRecycledDocumentsRange(documents, 0, 1000, condition, sort);
    else
        data.getDocumentsRange(documents, 0, 0, condition, sort);
    QStringList list;
    for (const VellDocument &document : qAsConst(documents))
        list.append(document.name);
    return list;
}

QStringList World::names(const QString &parentId)
{
    return names(inFolder(parentId), sortedBy("name"));
}

VellDocument World::fetch(const QString &id)
{
    VellDocument document;
    data.getDoc(id, document, false);
    return document;
}

QByteArray World::download(const VellDocument &document) const
{
    NetworkEventLoop loop(NetworkManager::instance()->get(
        service.baseApi() + QString("base-service/files/") + document.fileId));
    loop.exec();
    return loop.isSuccessful() ? loop.content() : QByteArray();
}

VellDocumentConditon inFolder(const QString &parentId)
{
    VellDocumentConditon condition;
    condition.parentId = parentId;
    return condition;
}

VellDocumentConditon recycleBin()
{
    VellDocumentConditon condition;
    condition.category = "recycle";
    return condition;
}

VellDocumentSort sortedBy(const QString &field, Qt::SortOrder order)
{
    return {field, order == Qt::AscendingOrder, false};
}
