#include <desktop/changes/DocumentChanges.h>

#include <session/VellSession.h>

#include <QMap>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

QStringList idsOf(const QList<VellDocument> &documents)
{
    QStringList ids;
    for (const VellDocument &document : documents)
        ids.append(document._id);
    return ids;
}

QList<VellDocument> withIds(const QList<VellDocument> &documents, const QStringList &ids)
{
    QList<VellDocument> found;
    std::copy_if(documents.begin(), documents.end(), std::back_inserter(found),
                 [&ids](const VellDocument &document) { return ids.contains(document._id); });
    return found;
}

} // namespace

DocumentChanges::DocumentChanges(VellDocuments *documents, QObject *parent)
    : QObject(parent), m_documents(documents)
{
    connect(documents->session(), &VellSession::projectChanged, this, [this] {
        m_history.clear();
        Q_EMIT undoChanged();
    });
}

std::function<void(const VellError &)> DocumentChanges::failureOf(const QString &what)
{
    return [this, what](const VellError &error) {
        if (error.kind != VellError::Kind::Cancelled)
            Q_EMIT failed(what + QLatin1Char(' ') + error.text, error);
    };
}

void DocumentChanges::remember(const QString &text, std::function<void()> undo)
{
    m_history.add(text, std::move(undo));
    Q_EMIT undoChanged();
}

void DocumentChanges::undo()
{
    m_history.undo();
    Q_EMIT undoChanged();
}

void DocumentChanges::createFolder(const QString &parentId)
{
    const auto onFailure = failureOf(tr("The folder could not be created."));
    m_documents->freeName(parentId, tr("New folder"), QString())
        ->then(
            this,
            [=](const QString &name) {
                m_documents->createFolder(parentId, name)
                    ->then(
                        this,
                        [this](const VellDocument &folder) {
                            Q_EMIT done(tr("“%1” has been created.").arg(folder.name));
                            Q_EMIT folderCreated(folder);
                        },
                        onFailure);
            },
            onFailure);
}

void DocumentChanges::rename(const VellDocument &document, const QString &name)
{
    m_documents->rename(document._id, name)
        ->then(
            this,
            [=](const VellDocument &renamed) {
                remember(tr("Rename “%1”").arg(document.name), [=] {
                    m_documents->rename(document._id, document.name)
                        ->then(
                            this,
                            [this](const VellDocument &back) {
                                Q_EMIT done(tr("“%1” has its old name again.").arg(back.name));
                            },
                            failureOf(tr("“%1” could not be renamed.").arg(name)));
                });
                Q_EMIT done(tr("“%1” is now “%2”.").arg(document.name, renamed.name));
            },
            failureOf(tr("“%1” could not be renamed.").arg(document.name)));
}

void DocumentChanges::report(const QList<VellDocument> &documents, const VellBulkResult &result,
                             const QString &success, const QString &failure)
{
    if (!result.succeeded.isEmpty())
        Q_EMIT done(success);
    const auto isFailed = [&](const VellDocument &document) {
        return result.failed.contains(document._id);
    };
    const auto first = std::find_if(documents.begin(), documents.end(), isFailed);
    if (first == documents.end())
        return;
    const VellError error = result.failed.value(first->_id);
    if (error.kind == VellError::Kind::Cancelled)
        return;
    QString names = tr("“%1”").arg(first->name);
    if (result.failed.size() > 1)
        names = tr("%1 and %n other(s)", nullptr, result.failed.size() - 1).arg(names);
    Q_EMIT failed(failure.arg(names) + QLatin1Char(' ') + error.text, error);
}

void DocumentChanges::move(const QList<VellDocument> &documents, const QString &folderId)
{
    QList<VellDocument> moving;
    std::copy_if(documents.begin(), documents.end(), std::back_inserter(moving),
                 [&folderId](const VellDocument &document) {
                     return document.parentId != folderId && document._id != folderId;
                 });
    if (moving.isEmpty())
        return;
    m_documents->move(idsOf(moving), folderId)->then(this, [=](const VellBulkResult &result) {
        const QList<VellDocument> moved = withIds(moving, result.succeeded);
        if (!moved.isEmpty())
            remember(tr("Move %n entries", nullptr, moved.size()), [=] { moveBack(moved); });
        report(moving, result, tr("%n entries have been moved.", nullptr, moved.size()),
               tr("%1 could not be moved."));
    });
}

void DocumentChanges::moveBack(const QList<VellDocument> &documents)
{
    QMap<QString, QList<VellDocument>> byFolder;
    for (const VellDocument &document : documents)
        byFolder[document.parentId].append(document);
    for (auto group = byFolder.cbegin(); group != byFolder.cend(); ++group) {
        m_documents->move(idsOf(group.value()), group.key())
            ->then(this, [this, moved = group.value()](const VellBulkResult &result) {
                report(moved, result,
                       tr("%n entries have been moved back.", nullptr, result.succeeded.size()),
                       tr("%1 could not be moved back."));
            });
    }
}

void DocumentChanges::remove(const QList<VellDocument> &documents)
{
    if (documents.isEmpty())
        return;
    m_documents->remove(idsOf(documents))->then(this, [=](const VellBulkResult &result) {
        const QList<VellDocument> removed = withIds(documents, result.succeeded);
        if (!removed.isEmpty()) {
            remember(tr("Delete %n entries", nullptr, removed.size()), [=] { restore(removed); });
            Q_EMIT recycleBinChanged();
        }
        report(documents, result,
               tr("%n entries have been moved into the recycle bin.", nullptr, removed.size()),
               tr("%1 could not be deleted."));
    });
}

void DocumentChanges::restore(const QList<VellDocument> &documents)
{
    if (documents.isEmpty())
        return;
    m_documents->restore(idsOf(documents))->then(this, [=](const VellBulkResult &result) {
        if (!result.succeeded.isEmpty())
            Q_EMIT recycleBinChanged();
        QString success = tr("%n entries have been restored.", nullptr, result.succeeded.size());
        if (!result.sameNamed.isEmpty()) {
            success += QLatin1Char(' ')
                + tr("%n of them are in a folder with another entry of the same name.", nullptr,
                     result.sameNamed.size());
        }
        report(documents, result, success, tr("%1 could not be restored."));
    });
}

void DocumentChanges::emptyRecycleBin()
{
    m_documents->emptyRecycleBin(QString())->then(
        this,
        [this](bool) {
            // Permanently deleted documents cannot be restored.
            m_history.clear();
            Q_EMIT undoChanged();
            Q_EMIT recycleBinChanged();
            Q_EMIT done(tr("The recycle bin is empty."));
        },
        failureOf(tr("The recycle bin could not be emptied.")));
}

void DocumentChanges::setFavorite(const QList<VellDocument> &documents, bool on)
{
    for (const VellDocument &document : documents) {
        m_documents->setFavorite(document._id, on)
            ->then(
                this,
                [=](bool) {
                    Q_EMIT done(
                        (on ? tr("“%1” is a favourite.") : tr("“%1” is no longer a favourite."))
                            .arg(document.name));
                },
                failureOf(tr("“%1” could not be marked.").arg(document.name)));
    }
}

void DocumentChanges::setFrequent(const QList<VellDocument> &documents, bool on)
{
    for (const VellDocument &document : documents) {
        m_documents->setFrequent(document._id, on)
            ->then(
                this,
                [=](bool) {
                    Q_EMIT done((on ? tr("“%1” is marked as frequently used.")
                                    : tr("“%1” is no longer marked as frequently used."))
                                    .arg(document.name));
                },
                failureOf(tr("“%1” could not be marked.").arg(document.name)));
    }
}

void DocumentChanges::setRemark(const VellDocument &document, const QString &remark)
{
    m_documents->setRemark(document._id, remark)
        ->then(
            this,
            [=](bool) { Q_EMIT done(tr("The remark of “%1” has been saved.").arg(document.name)); },
            failureOf(tr("The remark of “%1” could not be saved.").arg(document.name)));
}

} // namespace desktop
