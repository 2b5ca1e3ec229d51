#pragma once

#include <transfer/TransferRun.h>

#include <QStringList>

#include <exception>

//! \brief One attempt at an upload: of a file, or of a folder, which creates the folder and lists the entries.
class UploadRun : public TransferRun
{
public:
    UploadRun(TransferTask task, TransferHub &hub);

private:
    //! The document of the upload.
    struct Target
    {
        VellDocument
            document; // with `_id` the document for a new version, otherwise a new document
        ReplaceBase base;
        bool isNew() const { return document._id.isEmpty(); }
    };

    void work() override;

    // The local file, UploadRun.cpp
    void uploadFile();
    void hash();
    void requireUnchanged();

    // The document, UploadTarget.cpp
    std::optional<Target> decide();
    std::optional<Target> decideKnown();
    std::optional<Target> ask(const VellDocument &existing, bool hasChanged);
    Target create(const QString &name);
    Target createWithFreeName();
    static Target replace(const VellDocument &document);
    bool isConfirmed(const Target &target);
    QString freeName();
    std::optional<VellDocument> current(const QString &id);
    std::optional<VellDocument> findStored(const UploadTrace &trace);
    QString storedContent();

    // Sending, UploadSending.cpp
    bool sendSmall(const Target &target);
    bool sendLarge(const Target &target);
    QString sendContent();
    VellDocument makeDocument(const Target &target, const QString &fileId);
    void noteTrace(const Target &target);
    void finish(const VellDocument &document);
    template <typename Request>
    void sendOrFindStored(Request request);

    // UploadFolder.cpp
    void uploadFolder();
    VellDocument remoteFolder();

    const QString m_path;
    ReplaceBase m_file; // the state of the local file
    QString m_contentId; // of a small file that has been sent
    QStringList m_takenNames; // names that others have used since the start
};
