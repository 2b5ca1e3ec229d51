#pragma once

#include <transfer/TransferJournal.h>

//! \brief What one entry of a journal says.
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

//! \brief The bytes of a journal: a header, and entries with their length and a checksum.
namespace JournalFormat {

QByteArray header();

//! An entry as it is in the file.
QByteArray framed(const QByteArray &payload);

//! Reads the file \a bytes.
//! \return nothing if it is no journal
std::optional<JournalContent> read(const QByteArray &bytes);

//! Numbers the records from 1 on and the places and batches from 0 on, and drops what nobody uses.
void renumber(JournalContent &content);

//! A journal with nothing but \a content.
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

} // namespace JournalFormat
