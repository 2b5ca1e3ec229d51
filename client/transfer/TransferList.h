#pragma once

#include <transfer/TransferRecord.h>

#include <QHash>

#include <map>
#include <vector>

//! \brief A transfer in the memory of the queue. Common and rarely used fields are stored elsewhere.
struct TransferItem
{
    qint64 order = 0;
    qint64 sizeBytes = -1;
    qint64 doneBytes = 0;
    QString localName;
    QString name;
    QByteArray documentId; // UTF-8, half the size
    int group = 0;
    quint32 sweep = 0; // the latest sweep that has been applied
    quint32 newsNumber = 0; // of the latest signal with the transfer
    VellTransferState state = VellTransferState::Waiting;
    quint8 failuresInRow = 0;
    bool isFolder = false;
    bool isSkipped = false;
};

//! \brief All transfers of a queue, and their totals.
class TransferList
{
public:
    //! The identifier of \a record must not be in the list.
    TransferItem &add(const TransferRecord &record);
    void remove(qint64 id);

    //! Returns null if there is none.
    TransferItem *find(qint64 id);
    const TransferItem *find(qint64 id) const;
    const std::map<qint64, TransferItem> &items() const { return m_items; }
    //! Returns the first transfer from \a id on and sets \a id to its identifier; null at the end.
    TransferItem *next(qint64 *id);

    //! Returns all fields of \a item, whose identifier is \a id.
    TransferRecord record(qint64 id, const TransferItem &item) const;
    VellTransfer snapshot(qint64 id) const;

    bool isLarge(const TransferItem &item) const;
    bool isOfVersion(qint64 id) const { return !m_extras.value(id).contentId.isEmpty(); }
    VellTransferDirection direction(const TransferItem &item) const;
    int scope(const TransferItem &item) const { return group(item).scope; }
    int batch(const TransferItem &item) const { return group(item).batch; }

    //! \name Changes
    //! \{
    void setState(TransferItem &item, VellTransferState state);
    void setBytes(TransferItem &item, qint64 doneBytes, qint64 sizeBytes);
    void setScope(TransferItem &item, int scope);
    void setError(qint64 id, const VellError &error);
    void setDecision(qint64 id, std::optional<VellConflictPolicy> decision,
                     const ReplaceBase &base);
    void setTrace(qint64 id, const UploadTrace &trace);
    void setTag(qint64 id, const QByteArray &entityTag);
    //! \}

    const VellTransferTotals &totals() const { return m_totals; }

private:
    struct Group
    {
        int scope = 0;
        int batch = 0;
        VellTransferDirection direction = VellTransferDirection::Upload;
        qint64 folderTransferId = 0;
        QString localFolder;
        QString folderId;

        bool operator==(const Group &other) const;
    };
    friend uint qHash(const Group &group, uint seed) noexcept;

    struct Extra
    {
        VellError error;
        std::optional<VellConflictPolicy> decision;
        ReplaceBase base;
        UploadTrace trace;
        QByteArray entityTag;
        QString contentId;
    };

    const Group &group(const TransferItem &item) const
    {
        return m_groups.at(std::size_t(item.group));
    }
    int groupNumber(const Group &group);
    void count(const TransferItem &item, int sign);
    template <typename Value>
    void setExtra(qint64 id, Value Extra::*member, const Value &value);

    std::map<qint64, TransferItem> m_items;
    std::vector<Group> m_groups;
    QHash<Group, int> m_groupNumbers;
    QHash<qint64, Extra> m_extras;
    VellTransferTotals m_totals;
};
