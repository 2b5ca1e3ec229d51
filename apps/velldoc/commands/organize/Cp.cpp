#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/documents/Renaming.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>

#include <QSet>

namespace velldoc {

namespace {

//! \brief Copies documents, and folders with all their contents.
class Copier
{
public:
    explicit Copier(Context &context) : m_context(context) {}

    //! Copies \a document as \a name into the folder \a folderId at \a folder.
    void copy(const VellDocument &document, const QString &folderId, const RemotePath &folder,
              const QString &name)
    {
        Interrupt::check();
        const RemotePath path = folder.child(name);
        const bool isSkipped = m_context.leaves(path.text());
        if (!isFolder(document)) {
            ++m_count;
            Session &session = m_context.session();
            const VellDocument made = isSkipped
                ? document
                : session.await(session.documents().copy(document, folderId, name));
            m_made.append(documentJson(made, path.text()));
            m_context.out.setResult({{QStringLiteral("documents"), m_made}});
            return;
        }
        // Listed before the copy is created, because the copy may be in this folder.
        const QList<VellDocument> entries = m_context.tree().entries(document._id);
        const VellDocument made = m_context.tree().makeFolder(folderId, name, isSkipped);
        m_own.insert(made._id);
        for (const VellDocument &entry : entries) {
            if (!m_own.contains(entry._id))
                copy(entry, made._id, path, entry.name);
        }
    }

    int count() const { return m_count; }

private:
    Context &m_context;
    QSet<QString> m_own; // created folders
    QJsonArray m_made;
    int m_count = 0;
};

void run(Context &context)
{
    QStringList texts = context.arguments(2);
    const RemotePath target = RemotePath::parse(texts.takeLast());
    const QList<NamedDocument> sources = namedDocuments(context, texts);
    for (const NamedDocument &source : sources) {
        if (source.document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("The top level itself cannot be copied."));
        if (isFolder(source.document) && !context.isSet("recursive"))
            throw Failure(ExitFailed,
                          Text::tr("%1 is a folder: pass -r to copy it with all its contents.")
                              .arg(source.path.text()));
    }
    const std::optional<VellDocument> there = context.tree().tryFind(target);
    const bool isInto = there && isFolder(*there);
    if (there && !isInto)
        throw Failure(ExitFailed,
                      Text::tr("%1 already exists: choose another name.").arg(target.text()));
    if (!isInto && (sources.size() > 1 || target.endsWithSlash()))
        throw Failure(ExitNotFound,
                      Text::tr("There is no folder %1: create it with \"velldoc mkdir -p\".")
                          .arg(target.text()));
    const RemotePath folderPath = isInto ? target : target.parent();
    const VellDocument folder = context.tree().findFolder(folderPath);
    Copier copier(context);
    for (const NamedDocument &source : sources) {
        const QString name = isInto ? source.document.name : target.name();
        requireFreeName(context, folder._id, folderPath.text(), name);
        copier.copy(source.document, folder._id, folderPath, name);
    }
    if (!context.isDryRun())
        context.out.note(Text::tr("%n file(s) copied.", nullptr, copier.count()));
}

} // namespace

const Command &cpCommand()
{
    static const Command command{
        "cp",
        "SOURCE... TARGET",
        QT_TRANSLATE_NOOP("velldoc", "copy documents and folders"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Copies each SOURCE into the folder TARGET, or a single SOURCE to the path TARGET. The "
            "service makes the copies: nothing is transferred. The history is not copied."),
        {{"r,recursive", nullptr,
          QT_TRANSLATE_NOOP("velldoc", "Include folders with all their contents.")},
         dryRunOption()},
        {{"velldoc cp /templates/contract.docx /Contracts/tower.docx",
          QT_TRANSLATE_NOOP("velldoc", "create a document from a template")}},
        run,
    };
    return command;
}

} // namespace velldoc
