#pragma once

#include <async_ops/AsyncCreateDocument.h>
#include <support/ScriptedServer.h>

#include <QByteArray>
#include <QList>
#include <QSignalSpy>
#include <QString>
#include <QTemporaryDir>

//! How long a test waits for what must come: long enough for a busy machine with sanitizers.
constexpr int WaitMs = 30000;

//! Whether a file can be removed that somebody has open, as a job has the one that it sends.
#ifdef Q_OS_WIN
constexpr bool CanRemoveOpenFiles = false;
#else
constexpr bool CanRemoveOpenFiles = true;
#endif

//! \brief What an upload test needs: a scripted server, local files, and spies on every signal of a job.
struct UploadWorld
{
    static constexpr qint64 WholeFileLimit = 10'485'760;
    static constexpr qint64 ChunkBytes = 4'194'304;

    UploadWorld();

    //! Writes a file in which no two blocks are equal and gives the record of an upload of it.
    VellDocument makeFile(const QString &name, qint64 bytes) const;

    //! The targets of all requests so far, decoded, with their verbs: "POST /base-service/files".
    QStringList requestLines() const;

    //! The requests in one word each: "file", "record", "chunk0", "info", "document".
    QString requestWords() const;

    ScriptedServer server;
    QTemporaryDir folder;
};

//! \brief The file store's side of a chunked upload, as a state that a test can set and look at.
struct ChunkStore
{
    QByteArray id; //!< of the record; empty while there is none
    int savedChunk = 0;
    int totalChunk = 0;
    QByteArray fsFileId; //!< of the stored file; told with the record
    QByteArray finishedFileId = "c1"; //!< told with the last chunk
    QByteArray infoId = "i1"; //!< the stored file of the MD5
    QList<int> sentChunks;

    //! Answers record queries, chunks (each is saved and counted), "md5/…/info" and document requests ("d1").
    ScriptedReply answer(const ScriptedRequest &request);
    QByteArray record() const;
};

//! \brief Everything that a job has emitted.
struct JobSpies
{
    explicit JobSpies(AsyncCreateDocument *job);

    //! "createDocumentFinish error …", the signals in the order of their emission without progress.
    QString log() const { return events.join(QLatin1Char(' ')); }

    QStringList events;
    QList<VellDocument> finished;
    QList<int> errors;
    QList<QPair<qint64, qint64>> progress;
};

//! \brief One part of a form-data body.
struct FormPart
{
    QByteArray disposition;
    QByteArray contentType;
    QByteArray body;
};

//! The parts of a form-data request, in order; empty when it is none.
QList<FormPart> formParts(const ScriptedRequest &request);

//! The value of the form field \a name; null when there is none.
QByteArray formField(const QList<FormPart> &parts, const QByteArray &name);
