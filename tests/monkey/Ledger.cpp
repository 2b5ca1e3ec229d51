#include "Ledger.h"

#include <support/HttpClient.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <transfer/VellTransferQueue.h>

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int DeepestTree = 100;

//! Without the numbers that a name gets when it is taken.
QString base(QString name)
{
    static const QRegularExpression numbers(QStringLiteral("(\\([0-9]+\\))+(?=(\\.[^.]*)?$)"));
    return name.remove(numbers);
}

QByteArray md5Of(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5);
}

} // namespace

QByteArray Ledger::newContent(const QString &name, int fillBytes)
{
    const int number = m_contents.size() + 1;
    QByteArray content = QByteArray::number(number) + " " + name.toUtf8() + "\n";
    content += QByteArray(fillBytes, char('a' + number % 26));
    m_contents.insert(number, {name, md5Of(content)});
    return content;
}

void Ledger::noteDeleting(const QStringList &ids)
{
    for (const QString &id : ids)
        m_deleting.insert(id);
}

void Ledger::noteMoving(const QStringList &ids, const QString &folderId)
{
    for (const QString &id : ids)
        m_documents[id].parents.insert(folderId);
}

void Ledger::noteName(const QString &id, const QString &name)
{
    m_documents[id].names.insert(base(name));
}

void Ledger::learn(const VellDocument &document)
{
    Known &known = m_documents[document._id];
    known.names.insert(base(document.name));
    known.parents.insert(document.parentId);
    known.isFolder = document.type == QLatin1String("dir");
}

void Ledger::follow(VellDocuments *documents)
{
    connect(documents->store(), &VellDocumentStore::documentsChanged, this,
            [this](const QList<VellDocument> &changed) {
                for (const VellDocument &document : changed)
                    learn(document);
            });
}

void Ledger::follow(VellTransferQueue *queue)
{
    connect(queue, &VellTransferQueue::ended, this,
            [this](const VellTransfer &transfer, const VellDocument &document) {
                const bool isStored = transfer.direction == VellTransferDirection::Upload
                    && transfer.state == VellTransferState::Done && !document._id.isEmpty();
                if (isStored)
                    learn(document);
            });
}

bool Ledger::isDeletedOnPurpose(const QString &id, int depth) const
{
    if (m_deleting.contains(id))
        return true;
    const QSet<QString> parents = m_documents.value(id).parents;
    return depth < DeepestTree
        && std::any_of(parents.begin(), parents.end(), [&](const QString &parent) {
               return !parent.isEmpty() && isDeletedOnPurpose(parent, depth + 1);
           });
}

QStringList Ledger::compare(const QList<VellDocument> &present, const QList<VellDocument> &bin,
                            HttpClient *http) const
{
    QStringList problems;
    QSet<QString> ids;
    for (const VellDocument &document : present) {
        ids.insert(document._id);
        const QString problem = problemOf(document, http);
        if (!problem.isEmpty())
            problems.append(
                QStringLiteral("“%1” (%2): %3").arg(document.name, document._id, problem));
    }
    for (const VellDocument &document : bin) {
        ids.insert(document._id);
        if (!isDeletedOnPurpose(document._id))
            problems.append(
                QStringLiteral("“%1” (%2) is in the recycle bin, and nobody put it there")
                    .arg(document.name, document._id));
    }
    for (auto known = m_documents.cbegin(); known != m_documents.cend(); ++known) {
        if (!ids.contains(known.key()) && !isDeletedOnPurpose(known.key()))
            problems.append(QStringLiteral("“%1” (%2) is lost; it has been in %3")
                                .arg(known->names.values().join(QStringLiteral("”, “")),
                                     known.key(),
                                     known->parents.values().join(QStringLiteral(", "))));
    }
    return problems;
}

QString Ledger::problemOf(const VellDocument &document, HttpClient *http) const
{
    if (document.type == QLatin1String("dir"))
        return {};
    const HttpAnswer answer = http->get(QStringLiteral("base-service/files/") + document.fileId);
    if (!answer.isSuccess())
        return QStringLiteral("no content: status %1").arg(answer.status);
    const int number = answer.body.left(answer.body.indexOf(' ')).toInt();
    if (!m_contents.contains(number) || m_contents.value(number).md5 != md5Of(answer.body))
        return QStringLiteral("its content was never stored");
    QSet<QString> names = m_documents.value(document._id).names;
    names.insert(base(document.name));
    const QString stored = m_contents.value(number).name;
    return names.contains(base(stored)) ? QString()
                                        : QStringLiteral("it has the content of “%1”").arg(stored);
}
