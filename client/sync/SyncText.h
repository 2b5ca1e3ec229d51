#pragma once

#include <QCoreApplication>
#include <QString>

//! \brief The texts of VellSyncProblem.
class SyncText
{
    Q_DECLARE_TR_FUNCTIONS(VellSyncPlan)

public:
    static QString link() { return tr("It is a link, which is not followed."); }
    static QString notReadable() { return tr("It cannot be read."); }
    static QString noFolder(const QString &path) { return tr("%1 is not a folder.").arg(path); }
    static QString severalOfOneName()
    {
        return tr("The service has several entries with this name.");
    }
    static QString fileAndFolder()
    {
        return tr("It is a file on one side and a folder on the other.");
    }
    static QString otherCase(const QString &path)
    {
        return tr("It differs from %1 only in case, which the local disk ignores.").arg(path);
    }
    static QString badLocalName(const QString &name)
    {
        return tr("\"%1\" is not valid as the name of a local file.").arg(name);
    }
};
