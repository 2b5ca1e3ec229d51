#include <transfer/JournalFormat.h>

#include <QCryptographicHash>
#include <QDataStream>
#include <QtEndian>

#include <algorithm>
#include <map>
#include <tuple>

namespace {

constexpr int PrefixBytes = 2 * sizeof(quint32);

quint32 checksum(const QByteArray &payload)
{
    const QByteArray digest = QCryptographicHash::hash(payload, QCryptographicHash::Md5);
    return qFromBigEndian<quint32>(digest.constData());
}

template <typename... Parts>
QByteArray payload(JournalEntry entry, const Parts &...parts)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << quint8(entry);
    (stream << ... << parts);
    return bytes;
}

//! \brief Applies the entries of a journal one after the other.
class Reader
{
public:
    //! \return false if \a bytes is not a valid entry
    bool read(const QByteArray &bytes)
    {
        QDataStream stream(bytes);
        stream.setVersion(QDataStream::Qt_5_15);
        quint8 entry = 0;
        stream >> entry;
        take(JournalEntry(entry), stream);
        return stream.status() == QDataStream::Ok;
    }

    JournalContent takeResult()
    {
        for (auto &record : m_records)
            m_content.records.push_back(std::move(record.second));
        return std::move(m_content);
    }

private:
    void take(JournalEntry entry, QDataStream &stream)
    {
        switch (entry) {
        case JournalEntry::Place: {
            qint32 number = 0;
            TransferPlace place;
            stream >> number >> place.address >> place.projectId >> place.userId;
            m_content.places.insert(number, place);
            return;
        }
        case JournalEntry::Batch: {
            qint32 number = 0;
            qint32 policy = 0;
            TransferBatch batch;
            stream >> number >> policy >> batch.category;
            batch.policy = VellConflictPolicy(policy);
            m_content.batches.insert(number, batch);
            return;
        }
        case JournalEntry::Record: {
            TransferRecord record;
            stream >> record;
            m_records[record.id] = std::move(record);
            return;
        }
        case JournalEntry::Folder:
            takeFolder(stream);
            return;
        case JournalEntry::State:
        case JournalEntry::Removal:
        case JournalEntry::Tag:
        case JournalEntry::Trace:
            applyChange(entry, stream);
            return;
        }
        stream.setStatus(QDataStream::ReadCorruptData);
    }

    void takeFolder(QDataStream &stream)
    {
        TransferRecord folder;
        qint64 firstId = 0;
        quint32 count = 0;
        stream >> folder >> firstId >> count;
        for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
            FolderEntry entry;
            stream >> entry;
            m_records[firstId + i] = childRecord(folder, entry, firstId + i);
        }
        m_records[folder.id] = std::move(folder);
    }

    void applyChange(JournalEntry entry, QDataStream &stream)
    {
        qint64 id = 0;
        stream >> id;
        const auto found = m_records.find(id);
        if (found == m_records.end())
            return; // removed before
        TransferRecord &record = found->second;
        if (entry == JournalEntry::Removal) {
            m_records.erase(found);
        } else if (entry == JournalEntry::Tag) {
            stream >> record.entityTag;
        } else if (entry == JournalEntry::Trace) {
            stream >> record.trace;
        } else {
            qint32 state = 0;
            stream >> state;
            record.state = VellTransferState(state);
        }
    }

    JournalContent m_content;
    std::map<qint64, TransferRecord> m_records;
};

template <typename Value>
int renumbered(QHash<int, int> &numbers, const QHash<int, Value> &before, QHash<int, Value> &after,
               int number)
{
    const auto known = numbers.constFind(number);
    if (known != numbers.cend())
        return *known;
    const int fresh = numbers.size();
    numbers.insert(number, fresh);
    after.insert(fresh, before.value(number));
    return fresh;
}

} // namespace

QByteArray journal_format::header()
{
    return QByteArrayLiteral("VellTransfers 1\n");
}

QByteArray journal_format::framed(const QByteArray &payload)
{
    QByteArray prefix(PrefixBytes, Qt::Uninitialized);
    qToBigEndian<quint32>(quint32(payload.size()), prefix.data());
    qToBigEndian<quint32>(checksum(payload), prefix.data() + sizeof(quint32));
    return prefix + payload;
}

std::optional<JournalContent> journal_format::read(const QByteArray &bytes)
{
    if (!header().startsWith(bytes.left(header().size())))
        return std::nullopt;
    Reader reader;
    int position = header().size();
    while (position + PrefixBytes <= bytes.size()) {
        const auto size = qFromBigEndian<quint32>(bytes.constData() + position);
        const auto sum = qFromBigEndian<quint32>(bytes.constData() + position + sizeof(quint32));
        if (size > quint32(bytes.size() - position - PrefixBytes))
            break;
        const QByteArray payload = bytes.mid(position + PrefixBytes, int(size));
        if (checksum(payload) != sum || !reader.read(payload))
            break;
        position += PrefixBytes + int(size);
    }
    JournalContent content = reader.takeResult();
    content.isDamaged = position < bytes.size();
    return content;
}

void journal_format::renumber(JournalContent &content)
{
    QHash<qint64, qint64> ids;
    QHash<int, int> placeNumbers;
    QHash<int, int> batchNumbers;
    QHash<int, TransferPlace> places;
    QHash<int, TransferBatch> batches;
    qint64 id = 0;
    for (TransferRecord &record : content.records) {
        ids.insert(record.id, ++id);
        record.id = id;
        record.folderTransferId = ids.value(record.folderTransferId);
        record.scope = renumbered(placeNumbers, content.places, places, record.scope);
        record.batch = renumbered(batchNumbers, content.batches, batches, record.batch);
    }
    content.places = places;
    content.batches = batches;
    std::vector<TransferRecord *> inOrder;
    for (TransferRecord &record : content.records)
        inOrder.push_back(&record);
    std::sort(inOrder.begin(), inOrder.end(), [](const auto *a, const auto *b) {
        return std::tie(a->order, a->id) < std::tie(b->order, b->id);
    });
    qint64 order = 0;
    for (TransferRecord *const record : inOrder)
        record->order = ++order;
}

QByteArray journal_format::compact(const JournalContent &content)
{
    QByteArray bytes = header();
    for (auto entry = content.places.cbegin(); entry != content.places.cend(); ++entry)
        bytes += framed(place(entry.key(), entry.value()));
    for (auto entry = content.batches.cbegin(); entry != content.batches.cend(); ++entry)
        bytes += framed(batch(entry.key(), entry.value()));
    for (const TransferRecord &entry : content.records)
        bytes += framed(record(entry));
    return bytes;
}

QByteArray journal_format::place(int number, const TransferPlace &place)
{
    return payload(JournalEntry::Place, qint32(number), place.address, place.projectId,
                   place.userId);
}

QByteArray journal_format::batch(int number, const TransferBatch &batch)
{
    return payload(JournalEntry::Batch, qint32(number), qint32(batch.policy), batch.category);
}

QByteArray journal_format::record(const TransferRecord &record)
{
    return payload(JournalEntry::Record, record);
}

QByteArray journal_format::state(qint64 id, VellTransferState state)
{
    return payload(JournalEntry::State, id, qint32(state));
}

QByteArray journal_format::removal(qint64 id)
{
    return payload(JournalEntry::Removal, id);
}

QByteArray journal_format::tag(qint64 id, const QByteArray &entityTag)
{
    return payload(JournalEntry::Tag, id, entityTag);
}

QByteArray journal_format::folder(const TransferRecord &folder, qint64 firstId,
                                  const std::vector<FolderEntry> &entries)
{
    QByteArray bytes = payload(JournalEntry::Folder, folder, firstId, quint32(entries.size()));
    QDataStream stream(&bytes, QIODevice::Append);
    stream.setVersion(QDataStream::Qt_5_15);
    for (const FolderEntry &entry : entries)
        stream << entry;
    return bytes;
}

QByteArray journal_format::trace(qint64 id, const UploadTrace &trace)
{
    return payload(JournalEntry::Trace, id, trace);
}
