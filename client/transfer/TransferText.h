#pragma once

#include <QCoreApplication>
#include <QString>

//! \brief The texts of the errors of transfers.
class TransferText
{
    Q_DECLARE_TR_FUNCTIONS(VellTransferQueue)

public:
    static QString notThere() { return tr("The file no longer exists."); }
    static QString notReadable() { return tr("It cannot be read."); }
    static QString notPlain() { return tr("It is neither a file nor a folder."); }
    static QString linkToFolder() { return tr("It is a link to a folder, which is not followed."); }
    static QString brokenLink() { return tr("It is a broken link."); }
    static QString badRemoteName(const QString &name)
    {
        return tr("The service does not accept the name \"%1\".").arg(name);
    }
    static QString notUtf8(const QString &name)
    {
        return tr("The name \"%1\" is not valid UTF-8.").arg(name);
    }
    static QString badLocalName(const QString &name)
    {
        return tr("\"%1\" is not valid as the name of a local file.").arg(name);
    }
    static QString changesMeanwhile() { return tr("The file is changing while it is sent."); }
    static QString folderInTheWay() { return tr("A folder with this name already exists."); }
    static QString fileInTheWay() { return tr("A file with this name already exists."); }
    static QString targetDeleted() { return tr("The document has been deleted meanwhile."); }
    static QString noEnd() { return tr("The upload ended without a result."); }
    static QString otherSize(qint64 arrived, qint64 expected)
    {
        return tr("%1 bytes were received instead of %2.").arg(arrived).arg(expected);
    }
    static QString otherContent()
    {
        return tr("The received content differs from the one on the service.");
    }
    static QString notAFolder() { return tr("A file with the name of the folder already exists."); }
    static QString notAFile(const QString &path)
    {
        return tr("%1 is not a regular file and is not replaced.").arg(path);
    }
    static QString folderNotMade(const QString &path)
    {
        return tr("The folder %1 cannot be created.").arg(path);
    }
    static QString notWritten(const QString &path, const QString &reason)
    {
        return tr("%1 cannot be written: %2.").arg(path, reason);
    }
    static QString noProject() { return tr("No project is open."); }
    static QString notAList(const QString &path)
    {
        return tr("%1 is not a list of transfers.").arg(path);
    }
    static QString fileInUse() { return tr("The list of transfers is in use by another program."); }
};
