#include <transfer/UploadRun.h>

#include <transfer/TransferText.h>

#include <documents/DocumentLookup.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellPublicFun/VellPub.h>

#include <algorithm>

namespace {

using Kind = VellError::Kind;

constexpr int NotFound = 404;

bool isFile(const VellDocument &document)
{
    return document.type == QLatin1String("file");
}

} // namespace

std::optional<UploadRun::Target> UploadRun::decide()
{
    if (record().base.isSet() && task().policy != VellConflictPolicy::KeepBoth
        && task().policy != VellConflictPolicy::Skip)
        return decideKnown();
    const QList<VellDocument> found =
        document_lookup::find(service(), record().folderId, record().name);
    if (found.isEmpty())
        return create(record().name);
    const auto file = std::find_if(found.begin(), found.end(), isFile);
    const VellDocument existing = file == found.end() ? found.constFirst() : *file;
    switch (task().policy) {
    case VellConflictPolicy::Ask:
        return ask(existing, false);
    case VellConflictPolicy::KeepBoth:
        return createWithFreeName();
    case VellConflictPolicy::NewerOnly:
        if (m_file.updatedAt > existing.updatedAt)
            break;
        [[fallthrough]];
    case VellConflictPolicy::Skip:
        outcome().kind = TransferOutcome::Kind::Skipped;
        outcome().document = existing;
        return std::nullopt;
    case VellConflictPolicy::Replace:
        break;
    }
    if (!isFile(existing))
        fail(Kind::NameTaken, TransferText::folderInTheWay());
    return replace(existing);
}

std::optional<UploadRun::Target> UploadRun::decideKnown()
{
    const std::optional<VellDocument> now = current(record().base.id);
    if (now && ReplaceBase::of(*now) == record().base) {
        if (task().policy != VellConflictPolicy::NewerOnly || m_file.updatedAt > now->updatedAt)
            return replace(*now);
        outcome().kind = TransferOutcome::Kind::Skipped;
        outcome().document = *now;
        return std::nullopt;
    }
    if (now && task().canAsk)
        return ask(*now, true);
    fail(Kind::ChangedMeanwhile, now ? QString() : TransferText::targetDeleted());
}

std::optional<UploadRun::Target> UploadRun::ask(const VellDocument &existing, bool hasChanged)
{
    VellTransferQuestion question;
    question.id = record().id;
    question.hasChanged = hasChanged;
    question.existing = existing;
    question.localPath = m_path;
    question.freeName = freeName();
    question.canReplace = isFile(existing);
    outcome().kind = TransferOutcome::Kind::Asks;
    outcome().question = question;
    outcome().base = ReplaceBase::of(existing);
    return std::nullopt;
}

UploadRun::Target UploadRun::create(const QString &name)
{
    Target target;
    target.document.type = QStringLiteral("file");
    target.document.name = name;
    target.document.parentId = record().folderId;
    target.document.category = task().category;
    return target;
}

UploadRun::Target UploadRun::createWithFreeName()
{
    for (;;) {
        const QString name = freeName();
        if (hub().claims.claim(record().id, NameClaims::remoteFolder(record().folderId), name))
            return create(name);
        m_takenNames.append(name);
    }
}

UploadRun::Target UploadRun::replace(const VellDocument &document)
{
    return {document, ReplaceBase::of(document)};
}

QString UploadRun::freeName()
{
    const QStringList reserved = m_takenNames + QStringList{record().name}
        + hub().claims.namesIn(NameClaims::remoteFolder(record().folderId));
    return service().query([&] {
        QString existing;
        return service().documents().getValidDocName(record().folderId, record().name, existing,
                                                     QString(), reserved);
    });
}

bool UploadRun::isConfirmed(const Target &target)
{
    requireUnchanged();
    if (target.isNew())
        return document_lookup::find(service(), record().folderId, target.document.name).isEmpty();
    const std::optional<VellDocument> now = current(target.document._id);
    return now && ReplaceBase::of(*now) == target.base;
}

std::optional<VellDocument> UploadRun::current(const QString &id)
{
    try {
        VellDocument document = document_lookup::fetch(service(), id);
        return document.recycle == 0 ? std::make_optional(std::move(document)) : std::nullopt;
    } catch (const OperationFailure &failure) {
        if (failure.error.kind != Kind::NotFound)
            throw;
        return std::nullopt;
    }
}

std::optional<VellDocument> UploadRun::findStored(const UploadTrace &trace)
{
    const QString content = storedContent();
    if (content.isEmpty())
        return std::nullopt;
    const QString user = task().scope.userId;
    const auto isOurs = [&](const QString &author) { return user.isEmpty() || author == user; };
    if (trace.base.isSet()) {
        const std::optional<VellDocument> now = current(trace.base.id);
        const bool isReplaced = now && now->fileId == content && isOurs(now->updatedBy)
            && (now->fileId != trace.base.fileId || now->updatedAt != trace.base.updatedAt);
        return isReplaced ? now : std::nullopt;
    }
    const QList<VellDocument> found =
        document_lookup::find(service(), record().folderId, trace.name);
    for (const VellDocument &document : found) {
        if (document.fileId == content && isOurs(document.createdBy))
            return document;
    }
    return std::nullopt;
}

QString UploadRun::storedContent()
{
    if (!m_contentId.isEmpty())
        return m_contentId;
    const QString md5 =
        VellPub::getFileMd5(m_path, [](qint64) { return !RequestContext::current()->isAborted(); });
    service().checkAborted();
    RequestContext::current()->forgetFailure();
    NetworkEventLoop loop(NetworkManager::instance()->get(
        service().address(QStringLiteral("base-service/md5/%1/info").arg(md5))));
    loop.exec();
    if (loop.httpStatus() != NotFound)
        service().throwFailure();
    service().checkAborted();
    return loop.object().value(QLatin1String("_id")).toString();
}
