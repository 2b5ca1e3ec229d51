#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>
#include <velldoc/transfer/ContentStream.h>
#include <velldoc/transfer/DownloadPlan.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QSaveFile>
#include <QStandardPaths>

namespace velldoc {

namespace {

//! Creates a folder for the opened document, which only the user can read.
QString folderFor(const VellDocument &document)
{
    const QString top = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QStringLiteral("/velldoc/opened");
    QString folder = top + QLatin1Char('/') + document._id;
    const bool isMade = QDir().mkpath(folder)
        && QFile::setPermissions(top, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!isMade)
        throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(folder));
    return folder;
}

void run(Context &context)
{
    const QList<NamedDocument> files = namedDocuments(context, context.arguments(1));
    QStringList opened;
    for (const NamedDocument &named : files) {
        if (isFolder(named.document))
            throw Failure(ExitFailed,
                          Text::tr("%1 is a folder: name files.").arg(named.path.text()));
        const QString name = system_files::isFileName(named.document.name)
            ? named.document.name
            : QLatin1String("document.") + named.document.suffix;
        const QString path = folderFor(named.document) + QLatin1Char('/') + name;
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(path));
        DownloadTask task;
        task.document = named.document;
        streamContent(context, task, file);
        if (!file.commit())
            throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(path));
        if (!system_files::openWithDesktop(path))
            throw Failure(
                ExitFailed,
                Text::tr("No program to open files was found: the document is in %1.").arg(path));
        opened.append(path);
        context.out.setResult({{QStringLiteral("opened"), QJsonArray::fromStringList(opened)}});
    }
}

} // namespace

const Command &openCommand()
{
    static const Command command{
        "open",
        "PATH...",
        QT_TRANSLATE_NOOP("velldoc", "open files in the programs of the desktop"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Downloads the files PATH and opens each in the default program of the "
                          "desktop for its type. Changes made there stay on this computer: "
                          "\"velldoc put --update\" stores them."),
        {},
        {{"velldoc open /Drawings/plan.pdf", QT_TRANSLATE_NOOP("velldoc", "open a plan")}},
        run,
    };
    return command;
}

} // namespace velldoc
