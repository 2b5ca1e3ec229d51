#pragma once

#include <QCoreApplication>
#include <QString>

//! \brief The sentences with which transfers fail.
class TransferText
{
    Q_DECLARE_TR_FUNCTIONS(VellTransferQueue)

public:
    static QString notThere() { return tr("The file is not there any more."); }
    static QString notReadable() { return tr("It cannot be read."); }
    static QString notPlain() { return tr("It is neither a file nor a folder."); }
    static QString linkToFolder() { return tr("It is a link to a folder, which is not followed."); }
    static QString brokenLink() { return tr("It is a link to something that is not there."); }
    static QString badRemoteName(const QString &name)
    {
        return tr("The service does not take the name \"%1\".").arg(name);
    }
    static QString notUtf8(const QString &name)
    {
        return tr("The name \"%1\" is not UTF-8 text.").arg(name);
    }
    static QString badLocalName(const QString &name)
    {
        return tr("\"%1\" cannot be the name of a local file.").arg(name);
    }
    static QString changesMeanwhile() { return tr("The file is changing while it is sent."); }
    static QString folderInTheWay() { return tr("A folder of this name is in the way."); }
    static QString fileInTheWay() { return tr("A file of this name is in the way."); }
    static QString targetDeleted() { return tr("The document has been deleted meanwhile."); }
    static QString noEnd() { return tr("The upload has stopped without a reason."); }
    static QString otherSize(qint64 arrived, qint64 expected)
    {
        return tr("%1 bytes have arrived instead of %2.").arg(arrived).arg(expected);
    }
    static QString otherContent() { return tr("What has arrived is not what the service has."); }
    static QString notAFolder() { return tr("There is something else in place of the folder."); }
    static QString notAFile(const QString &path)
    {
        return tr("%1 is no plain file, and is not replaced.").arg(path);
    }
    static QString folderNotMade(const QString &path)
    {
        return tr("The folder %1 cannot be made.").arg(path);
    }
    static QString notWritten(const QString &path, const QString &reason)
    {
        return tr("%1 cannot be written: %2.").arg(path, reason);
    }
    static QString noProject() { return tr("No project is open."); }
    static QString notAList(const QString &path)
    {
        return tr("%1 is no list of transfers.").arg(path);
    }
    static QString fileInUse() { return tr("The list of transfers is in use by another program."); }
};
