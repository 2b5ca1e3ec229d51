#include <transfer/DownloadRun.h>

#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <async_ops/VellUploadLimits.h>
#include <documents/DocumentLookup.h>

using Kind = VellError::Kind;

DownloadRun::DownloadRun(TransferTask task, TransferHub &hub)
    : TransferRun(std::move(task), hub, VellTransferState::Receiving),
      m_target(record().localPath()), m_part(local_names::partPath(record()))
{}

void DownloadRun::work()
{
    const VellDocument document = source();
    if (document.recycle != 0)
        fail(Kind::NotFound, TransferText::targetDeleted());
    if (!local_names::isLocalName(record().localName))
        fail(Kind::BadName, TransferText::badLocalName(record().localName));
    outcome().kind = TransferOutcome::Kind::Done;
    outcome().error = {};
    if (document.type == QLatin1String("dir"))
        downloadFolder(document);
    else
        downloadFile(document);
}

VellDocument DownloadRun::source()
{
    VellDocument document; // a folder
    if (!record().contentId.isEmpty()) {
        document._id = record().documentId;
        document.name = record().name;
        document.type = QStringLiteral("file");
        document.fileId = record().contentId;
        document.fileSize = record().sizeBytes;
        return document;
    }
    // The top level has no record.
    return record().documentId.isEmpty() ? document
                                         : document_lookup::fetch(service(), record().documentId);
}

void DownloadRun::downloadFile(const VellDocument &document)
{
    setSizeBytes(document.fileSize);
    if ((document.fileSize > VellUploadLimits::WholeFileLimit) != record().isLarge()) {
        outcome().kind = TransferOutcome::Kind::Large;
        return;
    }
    outcome().document = document;
    if (!decide(document))
        return;
    makeFolder(record().localFolder);
    receive(document);
    setStage(VellTransferState::Saving);
    verify(document);
    if (!moveToTarget() && !ask(document, true))
        return;
    outcome().entityTag.clear();
}

void DownloadRun::cleanUp()
{
    m_part.close();
    QFile::remove(m_part.fileName());
    outcome().entityTag.clear();
}
