#include <transfer/DownloadRun.h>

#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <QDir>
#include <QFileInfo>

namespace {

using Kind = VellError::Kind;

} // namespace

bool DownloadRun::decide(const VellDocument &document)
{
    requireRegularFile(m_target);
    m_base = ReplaceBase::ofFile(m_target);
    if (!m_base.isSet())
        return true;
    switch (task().policy) {
    case VellConflictPolicy::Ask:
        return ask(document, false);
    case VellConflictPolicy::KeepBoth:
        m_target = freePath();
        m_base = {};
        outcome().localName = QFileInfo(m_target).fileName();
        return true;
    case VellConflictPolicy::NewerOnly:
        if (document.updatedAt > m_base.updatedAt)
            break;
        [[fallthrough]];
    case VellConflictPolicy::Skip:
        outcome().kind = TransferOutcome::Kind::Skipped;
        return false;
    case VellConflictPolicy::Replace:
        break;
    }
    // The answer applies to the state of the file when the question was asked.
    return !record().base.isSet() || record().base == m_base || ask(document, true);
}

bool DownloadRun::ask(const VellDocument &document, bool hasChanged)
{
    if (hasChanged && !task().canAsk)
        fail(Kind::ChangedMeanwhile, {});
    VellTransferQuestion question;
    question.id = record().id;
    question.hasChanged = hasChanged;
    question.existing = document;
    question.localPath = m_target;
    question.freeName = QFileInfo(freePath()).fileName();
    outcome().kind = TransferOutcome::Kind::Asks;
    outcome().question = question;
    outcome().base = ReplaceBase::ofFile(m_target);
    return false;
}

void DownloadRun::requireRegularFile(const QString &path)
{
    const QFileInfo info(path);
    if (info.isSymLink() || (info.exists() && !info.isFile()))
        fail(Kind::LocalFile, TransferText::notAFile(path));
}

void DownloadRun::makeFolder(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isDir())
        fail(Kind::LocalFile, TransferText::notAFolder());
    if (!QDir().mkpath(path))
        fail(Kind::LocalFile, TransferText::folderNotMade(path));
}

QString DownloadRun::freePath()
{
    for (int number = 2;; ++number) {
        const QString name = local_names::numbered(record().localName, number);
        const QString path = record().localFolder + QLatin1Char('/') + name;
        const QFileInfo info(path);
        if (!info.exists() && !info.isSymLink()
            && hub().claims.claim(record().id, record().localFolder, local_names::key(name)))
            return path;
    }
}

bool DownloadRun::moveToTarget()
{
    requireRegularFile(m_target);
    if (ReplaceBase::ofFile(m_target) != m_base)
        return false;
    const QString problem = local_names::replace(m_part.fileName(), m_target);
    if (!problem.isEmpty())
        fail(Kind::LocalFile, TransferText::notWritten(m_target, problem));
    return true;
}
