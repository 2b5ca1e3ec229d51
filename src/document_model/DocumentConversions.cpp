#include <document_model/DocumentConversions.h>

#include <VellPublicFun/VellPub.h>

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QVector>

#include <utility>
#include <vector>

namespace {

// Builds the trees depth-first with an explicit stack, because folders may be nested deeper than the stack of
// the thread allows.
class TreeBuilder
{
public:
    explicit TreeBuilder(const QList<VellDocument> &records);
    QList<VellDocument> build();

private:
    // The children of one record while they are being completed.
    struct Level
    {
        QString parentId;
        QList<VellDocument> documents;
        int broughtCount = 0; // the number of those, at the front, that the record already had
        int next = 0; // the first one that is not complete
        bool belowBrought = false;
        bool hasCutBranch = false;
    };

    void visitNext();
    void descend(const VellDocument &document, bool isBelowBrought);
    void closeLevel();

    const QList<VellDocument> &m_records;
    QHash<QString, QVector<int>> m_entries; // parentId to positions in m_records
    QHash<QString, QList<VellDocument>> m_finished;
    QSet<QString> m_way;
    std::vector<Level> m_levels;
};

TreeBuilder::TreeBuilder(const QList<VellDocument> &records) : m_records(records)
{
    for (int i = 0; i < records.size(); ++i)
        m_entries[records.at(i).parentId].append(i);
}

QList<VellDocument> TreeBuilder::build()
{
    descend(VellDocument(), false);
    while (m_levels.size() > 1 || m_levels.back().next < m_levels.back().documents.size()) {
        if (m_levels.back().next < m_levels.back().documents.size())
            visitNext();
        else
            closeLevel();
    }
    return m_levels.back().documents;
}

void TreeBuilder::visitNext()
{
    Level &level = m_levels.back();
    const VellDocument &document = level.documents.at(level.next);
    const bool isLeaf = document.children.isEmpty() && !m_entries.contains(document._id);
    // Otherwise a record that is its own ancestor would cause an endless loop; an empty id is that of the level
    // above the roots.
    if (isLeaf || m_way.contains(document._id)) {
        level.hasCutBranch = level.hasCutBranch || (!isLeaf && !document._id.isEmpty());
        ++level.next;
        return;
    }
    // Records with the same id share one subtree: otherwise a list that contains each folder twice would double with
    // every level. Below children that a record already had there may be a cycle that the first visit did not have.
    const bool isBelowBrought = level.belowBrought || level.next < level.broughtCount;
    const auto finished = m_finished.constFind(document._id);
    if (finished != m_finished.constEnd() && document.children.isEmpty() && !isBelowBrought) {
        level.documents[level.next].children = *finished;
        ++level.next;
        return;
    }
    descend(document, isBelowBrought);
}

void TreeBuilder::descend(const VellDocument &document, bool isBelowBrought)
{
    Level level;
    level.parentId = document._id;
    level.documents = document.children;
    level.broughtCount = document.children.size();
    level.belowBrought = isBelowBrought;
    const QVector<int> entries = m_entries.value(document._id);
    if (!entries.isEmpty())
        level.documents.reserve(level.broughtCount + entries.size());
    for (const int position : entries)
        level.documents.append(m_records.at(position));
    m_way.insert(document._id);
    m_levels.push_back(std::move(level));
}

void TreeBuilder::closeLevel()
{
    const Level done = std::move(m_levels.back());
    m_levels.pop_back();
    m_way.remove(done.parentId);
    if (done.broughtCount == 0 && !done.hasCutBranch)
        m_finished.insert(done.parentId, done.documents);

    Level &level = m_levels.back();
    level.hasCutBranch = level.hasCutBranch || done.hasCutBranch;
    // Compared first, because writing would copy a list that has not changed.
    if (!done.documents.isSharedWith(level.documents.at(level.next).children))
        level.documents[level.next].children = done.documents;
    ++level.next;
}

} // namespace

void VellPubDoc::docLite2Document(const VellDocumentLite &lite, VellDocument &doc)
{
    doc._id = lite._id;
    doc.name = lite.name;
    doc.fileSize = lite.fileSize;
    doc.suffix = lite.suffix;
    doc.createdAt = VellPub::getDateTimeByQString(lite.createdAt);
    doc.createdBy = lite.createdBy;
}

void VellPubDoc::docLite2Document(const QList<VellDocumentLite> &lites, QList<VellDocument> &docs)
{
    for (const VellDocumentLite &lite : lites) {
        VellDocument doc;
        docLite2Document(lite, doc);
        docs.append(doc);
    }
}

void VellPubDoc::document2DocLite(const VellDocument &doc, VellDocumentLite &lite)
{
    lite._id = doc._id;
    lite.name = doc.name;
    lite.fileSize = doc.fileSize;
    lite.suffix = doc.suffix;
    lite.createdAt = VellPub::getQStringByDateTime(doc.createdAt);
    lite.createdBy = doc.createdBy;
}

void VellPubDoc::getVellDocument(const QFileInfo &info, VellDocument &doc)
{
    if (!info.exists())
        return;
    doc.filePath = info.filePath();
    doc.name = info.fileName();
    doc.fileSize = info.size();
    doc.suffix = info.suffix();
    doc.type = !info.isSymLink() && info.isDir() ? QStringLiteral("dir") : QStringLiteral("file");
}

void VellPubDoc::getVellDocument(const QString &path, VellDocument &doc)
{
    getVellDocument(QFileInfo(path), doc);
}

void VellPubDoc::makeDocListTree(QList<VellDocument> &docs)
{
    docs = TreeBuilder(docs).build();
}
