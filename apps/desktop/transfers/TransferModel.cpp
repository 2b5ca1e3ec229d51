#include <desktop/transfers/TransferModel.h>

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace desktop {

namespace {

QVariant percent(const VellTransfer &transfer)
{
    if (transfer.state == VellTransferState::Done)
        return 100;
    if (transfer.sizeBytes <= 0)
        return {};
    return int(transfer.doneBytes * 100 / transfer.sizeBytes);
}

QString sizeText(const VellTransfer &transfer)
{
    return transfer.isFolder || transfer.sizeBytes < 0
        ? QString()
        : QLocale().formattedDataSize(transfer.sizeBytes);
}

QString localText(const VellTransfer &transfer)
{
    return QDir::toNativeSeparators(transfer.localPath);
}

} // namespace

TransferModel::TransferModel(VellTransferQueue *queue, QObject *parent)
    : QAbstractTableModel(parent), m_queue(queue)
{
    connect(queue, &VellTransferQueue::added, this, &TransferModel::add);
    connect(queue, &VellTransferQueue::removed, this, &TransferModel::remove);
    connect(queue, &VellTransferQueue::changed, this, &TransferModel::change);
    add(queue->ids());
}

void TransferModel::add(const QVector<qint64> &ids)
{
    QVector<qint64> fresh;
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(fresh),
                 [this](qint64 id) { return !m_rows.contains(id); });
    if (fresh.isEmpty())
        return;
    beginInsertRows({}, m_ids.size(), m_ids.size() + fresh.size() - 1);
    for (const qint64 id : qAsConst(fresh)) {
        m_rows.insert(id, m_ids.size());
        m_ids.append(id);
    }
    endInsertRows();
}

void TransferModel::remove(const QVector<qint64> &ids)
{
    QVector<int> rows;
    for (const qint64 id : ids) {
        const auto row = m_rows.constFind(id);
        if (row != m_rows.cend())
            rows.append(row.value());
    }
    std::sort(rows.begin(), rows.end(), std::greater<>());
    for (const int row : qAsConst(rows)) {
        beginRemoveRows({}, row, row);
        m_ids.remove(row);
        endRemoveRows();
    }
    m_rows.clear();
    for (int row = 0; row < m_ids.size(); ++row)
        m_rows.insert(m_ids.at(row), row);
}

void TransferModel::change(const QVector<qint64> &ids)
{
    int first = m_ids.size();
    int last = -1;
    for (const qint64 id : ids) {
        const int row = m_rows.value(id, -1);
        if (row < 0)
            continue;
        first = std::min(first, row);
        last = std::max(last, row);
    }
    if (last >= 0)
        Q_EMIT dataChanged(index(first, 0), index(last, ColumnCount - 1));
}

int TransferModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_ids.size();
}

int TransferModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString TransferModel::stateText(const VellTransfer &transfer)
{
    const bool isUpload = transfer.direction == VellTransferDirection::Upload;
    switch (transfer.state) {
    case VellTransferState::Waiting:
        return transfer.error ? tr("Trying again. %1").arg(transfer.error.text) : tr("Waiting");
    case VellTransferState::Hashing:
        return tr("Reading");
    case VellTransferState::Sending:
        return tr("Sending");
    case VellTransferState::Receiving:
        return tr("Receiving");
    case VellTransferState::Saving:
        return tr("Saving");
    case VellTransferState::Asking:
        return tr("Waiting for your answer");
    case VellTransferState::Paused:
        return tr("Paused");
    case VellTransferState::Done:
        if (transfer.isSkipped)
            return tr("Skipped");
        return isUpload ? tr("Uploaded") : tr("Downloaded");
    case VellTransferState::Failed:
        return tr("Failed. %1").arg(transfer.error.text);
    case VellTransferState::Cancelled:
        return tr("Cancelled");
    }
    return {};
}

QVariant TransferModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const qint64 id = m_ids.at(index.row());
    if (role == IdRole)
        return id;
    const VellTransfer transfer = m_queue->transfer(id);
    switch (role) {
    case StateRole:
        return int(transfer.state);
    case PercentRole:
        return percent(transfer);
    case Qt::AccessibleTextRole:
        return QString(transfer.name + QStringLiteral(", ") + stateText(transfer));
    case Qt::ToolTipRole:
        return transfer.error && !transfer.error.detail.isEmpty()
            ? QString(stateText(transfer) + QLatin1Char('\n') + transfer.error.detail)
            : data(index, Qt::DisplayRole);
    case Qt::TextAlignmentRole:
        return index.column() == SizeColumn ? int(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::DisplayRole:
        break;
    default:
        return {};
    }
    switch (index.column()) {
    case NameColumn: {
        const bool isUpload = transfer.direction == VellTransferDirection::Upload;
        const QString arrow = isUpload ? QStringLiteral("↑ ") : QStringLiteral("↓ ");
        return QString(arrow + transfer.name);
    }
    case StateColumn:
        return stateText(transfer);
    case SizeColumn:
        return sizeText(transfer);
    case TargetColumn:
        return localText(transfer);
    default:
        return {};
    }
}

QVariant TransferModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case NameColumn:
        return tr("Name");
    case StateColumn:
        return tr("State");
    case ProgressColumn:
        return tr("Progress");
    case SizeColumn:
        return tr("Size");
    case TargetColumn:
        return tr("Local path");
    default:
        return {};
    }
}

} // namespace desktop
