#pragma once

#include <transfer/TransferJournal.h>

//! \brief The kind of an entry of a journal.
enum class JournalEntry : quint8 {
    Place = 1,
    Batch,
    Record,
    State,
    Removal,
    Tag,
    Folder,
    Trace,
};

//! \brief The format of a journal: a header, and entries with their length and a checksum.
namespace journal_format {

QByteArray header();

//! Returns the bytes of an entry in the file.
QByteArray framed(const QByteArray &payload);

//! Reads the journal \a bytes.
//! \return no value if it is not a journal
std::optional<JournalContent> read(const QByteArray &bytes);

//! Numbers the records from 1 and the places and batches from 0, and removes unused places and batches.
void renumber(JournalContent &content);

//! Returns a journal that contains only \a content.
QByteArray compact(const JournalContent &content);

//! \name Payloads
//! \{
QByteArray place(int number, const TransferPlace &place);
QByteArray batch(int number, const TransferBatch &batch);
QByteArray record(const TransferRecord &record);
QByteArray state(qint64 id, VellTransferState state);
QByteArray removal(qint64 id);
QByteArray tag(qint64 id, const QByteArray &entityTag);
QByteArray folder(const TransferRecord &folder, qint64 firstId,
                  const std::vector<FolderEntry> &entries);
QByteArray trace(qint64 id, const UploadTrace &trace);
//! \}

} // namespace journal_format
