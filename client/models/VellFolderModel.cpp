#include <models/VellFolderModel.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <models/FileTypeIcons.h>
#include <models/FolderNode.h>
#include <session/VellSession.h>

#include <QLocale>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr int RefreshMs = 100; // combines many changes into one request

using State = FolderNode::State;

bool isFolder(const VellDocument &document)
{
    return document.type == QLatin1String("dir") && document.recycle == 0;
}

//! The locale for sorting. The C locale compares bytes only, without numbers and case.
QLocale sortingLocale()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}

} // namespace

VellFolderModel::VellFolderModel(VellDocuments *documents, const QString &category, QObject *parent)
    : QAbstractItemModel(parent), m_documents(documents), m_category(category),
      m_icons(std::make_unique<FileTypeIcons>()), m_collator(sortingLocale())
{
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(RefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, &VellFolderModel::askForChanged);
    const VellDocumentStore *const store = documents->store();
    connect(store, &VellDocumentStore::documentsChanged, this, &VellFolderModel::updateFolders);
    connect(store, &VellDocumentStore::documentsRemoved, this, [this](const QStringList &ids) {
        for (const QString &id : ids) {
            FolderNode *const node = id.isEmpty() ? nullptr : m_nodes.value(id);
            if (node)
                remove(node);
        }
    });
    connect(store, &VellDocumentStore::folderChanged, this, [this](const QString &id) {
        m_changed.insert(id);
        if (!m_refresh.isActive())
            m_refresh.start();
    });
    connect(store, &VellDocumentStore::cleared, this, &VellFolderModel::reset);
    connect(documents->session(), &VellSession::stateChanged, this,
            [this](VellSession::State state) {
                if (state != VellSession::State::Online)
                    return;
                m_changed += std::exchange(m_failed, {});
                askForChanged();
            });
    reset();
}

VellFolderModel::~VellFolderModel() = default;

void VellFolderModel::reset()
{
    beginResetModel();
    m_changed.clear();
    m_failed.clear();
    m_nodes.clear();
    m_root = std::make_unique<FolderNode>();
    m_nodes.insert(QString(), m_root.get());
    endResetModel();
    countQuestions(-m_questionCount);
}

void VellFolderModel::reload()
{
    for (auto node = m_nodes.cbegin(); node != m_nodes.cend(); ++node)
        m_changed.insert(node.key());
    askForChanged();
}

void VellFolderModel::askForChanged()
{
    const QSet<QString> changed = std::exchange(m_changed, {});
    for (const QString &id : changed) {
        FolderNode *const node = m_nodes.value(id);
        if (!node || node->state == State::Unknown)
            continue;
        if (node->request)
            m_changed.insert(id); // the response in flight may be older than the change
        else
            ask(node);
    }
    if (!m_changed.isEmpty())
        m_refresh.start();
}

void VellFolderModel::ask(FolderNode *node)
{
    VellDocumentConditon condition;
    condition.parentId = node->folder._id;
    condition.type = QStringLiteral("dir");
    condition.category = m_category;
    if (node->state != State::Known)
        node->state = State::Asking;
    countQuestions(+1);
    const auto onEnd = [this, node] {
        node->request = nullptr;
        countQuestions(-1);
    };
    node->request = m_documents->list(condition)->then(
        &node->receiver,
        [=](const QList<VellDocument> &folders) {
            onEnd();
            merge(node, folders);
        },
        [=](const VellError &error) {
            onEnd();
            if (node->state == State::Asking)
                node->state = State::Failed;
            m_failed.insert(node->folder._id);
            Q_EMIT loadFailed(node->folder._id, error);
        });
}

void VellFolderModel::countQuestions(int change)
{
    const bool wasLoading = isLoading();
    m_questionCount += change;
    if (isLoading() != wasLoading)
        Q_EMIT loadingChanged(isLoading());
}

void VellFolderModel::merge(FolderNode *node, QList<VellDocument> folders)
{
    const bool isFirst = node->state != State::Known;
    node->state = State::Known;
    std::sort(folders.begin(), folders.end(),
              [this](const VellDocument &a, const VellDocument &b) { return isBefore(a, b); });
    QSet<QString> ids;
    for (const VellDocument &folder : qAsConst(folders))
        ids.insert(folder._id);
    for (std::size_t i = node->children.size(); i-- > 0;) {
        if (!ids.contains(node->children[i]->folder._id))
            remove(node->children[i].get());
    }
    QList<VellDocument> added;
    for (const VellDocument &folder : qAsConst(folders)) {
        FolderNode *const known = m_nodes.value(folder._id);
        if (!known)
            added.append(folder);
        else if (known->parent == node && known->folder.name == folder.name)
            known->folder = folder; // moved below, all at once
        else
            update(known, folder);
    }
    if (!node->children.empty()) {
        const QModelIndex parent = indexOf(node);
        Q_EMIT dataChanged(index(0, 0, parent), index(rowCount(parent) - 1, 0, parent));
        for (const VellDocument &folder : qAsConst(added))
            insert(node, placeFor(*node, folder), {folder});
    } else if (!added.isEmpty()) {
        insert(node, 0, added);
    } else if (isFirst) {
        // So that a view removes the mark for subfolders.
        const QList<QPersistentModelIndex> parents{indexOf(node)};
        Q_EMIT layoutAboutToBeChanged(parents);
        Q_EMIT layoutChanged(parents);
    }
    Q_EMIT loaded(node->folder._id);
}

void VellFolderModel::insert(FolderNode *parent, int row, const QList<VellDocument> &folders)
{
    beginInsertRows(indexOf(parent), row, row + folders.size() - 1);
    std::vector<std::unique_ptr<FolderNode>> nodes;
    for (const VellDocument &folder : folders) {
        nodes.push_back(std::make_unique<FolderNode>());
        nodes.back()->folder = folder;
        nodes.back()->parent = parent;
        m_nodes.insert(folder._id, nodes.back().get());
    }
    parent->children.insert(parent->children.begin() + row, std::make_move_iterator(nodes.begin()),
                            std::make_move_iterator(nodes.end()));
    endInsertRows();
}

void VellFolderModel::update(FolderNode *node, const VellDocument &folder)
{
    FolderNode *const parent = m_nodes.value(folder.parentId);
    if (!isFolder(folder) || !parent || parent->state != State::Known) {
        remove(node);
        return;
    }
    const int from = node->row();
    const int to = placeFor(*parent, folder, node);
    if (parent != node->parent || to != from) {
        // For beginMoveRows() the node is still in its row.
        const int target = parent == node->parent && to > from ? to + 1 : to;
        if (!beginMoveRows(indexOf(node->parent), from, from, indexOf(parent), target)) {
            remove(node); // below itself: the records are from different times
            return;
        }
        std::unique_ptr<FolderNode> moved = std::move(node->parent->children[std::size_t(from)]);
        node->parent->children.erase(node->parent->children.begin() + from);
        parent->children.insert(parent->children.begin() + to, std::move(moved));
        node->parent = parent;
        endMoveRows();
    }
    node->folder = folder;
    const QModelIndex index = indexOf(node);
    Q_EMIT dataChanged(index, index);
}

void VellFolderModel::remove(FolderNode *node)
{
    FolderNode *const parent = node->parent;
    const int row = node->row();
    beginRemoveRows(indexOf(parent), row, row);
    forget(node);
    parent->children.erase(parent->children.begin() + row);
    endRemoveRows();
}

void VellFolderModel::forget(const FolderNode *node)
{
    m_nodes.remove(node->folder._id);
    if (node->request)
        countQuestions(-1);
    for (const auto &child : node->children)
        forget(child.get());
}

void VellFolderModel::updateFolders(const QList<VellDocument> &documents)
{
    for (const VellDocument &document : documents) {
        if (FolderNode *const node = m_nodes.value(document._id)) {
            update(node, document);
            continue;
        }
        FolderNode *const parent = m_nodes.value(document.parentId);
        const bool isShown = isFolder(document) && parent && parent->state == State::Known
            && (m_category.isEmpty() || document.category == m_category);
        if (isShown)
            insert(parent, placeFor(*parent, document), {document});
    }
}

bool VellFolderModel::isBefore(const VellDocument &a, const VellDocument &b) const
{
    const int order = m_collator.compare(a.name, b.name);
    return order != 0 ? order < 0 : a._id < b._id;
}

//! The row for \a folder below \a parent, without \a except, whose name may be out of order.
int VellFolderModel::placeFor(const FolderNode &parent, const VellDocument &folder,
                              const FolderNode *except) const
{
    const auto begin = parent.children.begin();
    const auto end = parent.children.end();
    const auto isChildBefore = [this](const auto &child, const VellDocument &other) {
        return isBefore(child->folder, other);
    };
    const auto gap =
        std::find_if(begin, end, [except](const auto &c) { return c.get() == except; });
    const auto place = std::lower_bound(begin, gap, folder, isChildBefore);
    if (place != gap || gap == end)
        return int(place - begin);
    return int(std::lower_bound(gap + 1, end, folder, isChildBefore) - begin) - 1;
}

FolderNode *VellFolderModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<FolderNode *>(index.internalPointer()) : m_root.get();
}

QModelIndex VellFolderModel::indexOf(const FolderNode *node) const
{
    if (!node->parent)
        return {};
    return createIndex(node->row(), 0, const_cast<FolderNode *>(node));
}

QModelIndex VellFolderModel::indexOf(const QString &id) const
{
    const FolderNode *const node = m_nodes.value(id);
    return node ? indexOf(node) : QModelIndex();
}

std::optional<VellDocument> VellFolderModel::folder(const QModelIndex &index) const
{
    return index.isValid() ? std::make_optional(nodeAt(index)->folder) : std::nullopt;
}

QStringList VellFolderModel::openedFolders() const
{
    QStringList ids;
    for (auto node = m_nodes.cbegin(); node != m_nodes.cend(); ++node) {
        if (node.value()->state == State::Known)
            ids.append(node.key());
    }
    return ids;
}

QModelIndex VellFolderModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeAt(parent)->children[std::size_t(row)].get());
}

QModelIndex VellFolderModel::parent(const QModelIndex &child) const
{
    return child.isValid() ? indexOf(nodeAt(child)->parent) : QModelIndex();
}

int VellFolderModel::rowCount(const QModelIndex &parent) const
{
    return int(nodeAt(parent)->children.size());
}

int VellFolderModel::columnCount(const QModelIndex &) const
{
    return 1;
}

bool VellFolderModel::hasChildren(const QModelIndex &parent) const
{
    const FolderNode *const node = nodeAt(parent);
    return node->state != State::Known || !node->children.empty();
}

bool VellFolderModel::canFetchMore(const QModelIndex &parent) const
{
    return nodeAt(parent)->state == State::Unknown
        && !m_documents->session()->projectId().isEmpty();
}

void VellFolderModel::fetchMore(const QModelIndex &parent)
{
    if (canFetchMore(parent))
        ask(nodeAt(parent));
}

QVariant VellFolderModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const VellDocument &folder = nodeAt(index)->folder;
    switch (role) {
    case Qt::DisplayRole:
        return folder.name;
    case Qt::DecorationRole:
        return m_icons->icon(folder);
    default:
        return VellModelRole::value(folder, role);
    }
}

QVariant VellFolderModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Folders");
    return QAbstractItemModel::headerData(section, orientation, role);
}

QHash<int, QByteArray> VellFolderModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(VellModelRole::names());
    return names;
}
