#pragma once

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <service/ReferenceService.h>
#include <session/VellSession.h>

#include <QByteArray>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

constexpr int WaitMs = 30'000;

//! Waits for the end of \a operation. \return its error; no error after success
VellError waitForEnd(VellOperation *operation);

//! Waits for \a operation and returns its result. A failure ends the program, so that a test reads as the story that it
//! tells.
template <typename Result>
Result await(VellResult<Result> *operation)
{
    Result result;
    operation->then(operation, [&result](const Result &value) { result = value; });
    if (const VellError error = waitForEnd(operation))
        qFatal("an operation failed: %s (%s)", qPrintable(error.text), qPrintable(error.detail));
    return result;
}

//! \brief A session on a service of its own; the project "p1" is open.
class ClientWorld
{
public:
    ClientWorld();

    //! The connection to the service.
    VellConnection connection(const QString &token = {}) const;

    //! Stores \a content by the service's own requests, behind the session's back.
    VellDocument store(const QString &name, const QByteArray &content = "content",
                       const QString &parentId = {});

    //! The content \a fileId as the service has it.
    QByteArray content(const QString &fileId) const;

    //! Renames \a document behind the session's back.
    void renameElsewhere(const VellDocument &document, const QString &name);

    //! The names in a folder, sorted.
    QStringList names(const QString &parentId = {});

private:
    QTemporaryDir m_folder;

public:
    ReferenceService service;
    VellSession session;
    VellDocuments documents;
};
