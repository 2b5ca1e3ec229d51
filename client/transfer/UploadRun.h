#pragma once

#include <transfer/TransferRun.h>

#include <QStringList>

#include <exception>

//! \brief One attempt at uploading a file, or at uploading a folder, which makes the folder and finds its entries.
class UploadRun : public TransferRun
{
public:
    UploadRun(TransferTask task, TransferHub &hub);

private:
    //! The document that the file becomes.
    struct Target
    {
        VellDocument document; // with `_id` the one that gets a new version, else a new one
        ReplaceBase base;
        bool isNew() const { return document._id.isEmpty(); }
    };

    void work() override;

    // The local file, UploadRun.cpp
    void uploadFile();
    void hash();
    void requireUnchanged();

    // What is to be made of it, UploadTarget.cpp
    std::optional<Target> decide();
    std::optional<Target> decideKnown();
    std::optional<Target> ask(const VellDocument &existing, bool hasChanged);
    Target create(const QString &name);
    Target createBeside();
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
    void orFindStored(Request request);

    // UploadFolder.cpp
    void uploadFolder();
    VellDocument remoteFolder();

    const QString m_path;
    ReplaceBase m_file; // the state of the local file
    QString m_contentId; // of a small file, once the service has it
    QStringList m_takenNames; // by what others have made since the start
};
