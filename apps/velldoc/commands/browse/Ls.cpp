#include <velldoc/commands/Commands.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QSet>

#include <utility>

namespace velldoc {

namespace {

struct SortWord
{
    const char *word;
    const char *field;
    bool isAscending; //!< without --reverse: names ascending, times and sizes descending
};

constexpr SortWord SortWords[] = {
    {"name", "name", true},          {"size", "file.fileSize", false},
    {"created", "createdAt", false}, {"updated", "updatedAt", false},
    {"order", "order", true},
};

VellDocumentSort readSort(const Context &context)
{
    VellDocumentSort sort;
    if (!context.isSet("sort")) {
        if (context.isSet("reverse"))
            throw Failure(ExitUsage, Text::tr("--reverse needs --sort."));
        return sort;
    }
    const QString wanted = context.word("sort");
    for (const SortWord &row : SortWords) {
        if (wanted != QLatin1String(row.word))
            continue;
        sort.isDefault = false;
        sort.sortField = QString::fromLatin1(row.field);
        sort.isAsc = row.isAscending != context.isSet("reverse");
    }
    return sort;
}

constexpr int FirstNames = 200;

struct Page
{
    int limit;
    int skip;
    VellDocumentSort sort;
};

class Lister
{
public:
    Lister(Context &context, const Page &page) : m_context(context), m_page(page) {}

    //! Prints the files in one list, with their paths if there are several.
    void listFiles(const QList<NamedDocument> &named)
    {
        QList<VellDocument> files;
        for (const NamedDocument &entry : named) {
            if (isFolder(entry.document))
                continue;
            files.append(entry.document);
            if (named.size() > 1 && !m_context.out.isJson())
                files.last().name = entry.path.text();
        }
        if (files.isEmpty())
            return;
        const bool isTitled = std::exchange(m_isTitled, false);
        if (m_context.out.isJson()) {
            for (const NamedDocument &entry : named) {
                if (!isFolder(entry.document))
                    addToResult(entry.path, {entry.document}, 1, true);
            }
        } else {
            show(named.constFirst().path, files, files.size());
        }
        m_isTitled = isTitled;
        m_hasShown = true;
    }

    void list(const RemotePath &path, const VellDocument &document)
    {
        const QList<VellDocument> entries =
            isStreamed() ? streamNames(path, document._id) : showEntries(path, document._id);
        if (!m_context.isSet("recursive"))
            return;
        for (const VellDocument &entry : entries) {
            if (isFolder(entry))
                list(path.child(entry.name), entry);
        }
    }

    void setTitled() { m_isTitled = true; }

private:
    bool isPaged() const { return m_page.limit > 0; }

    //! Prints names only, for which neither the widths of columns nor a count are needed.
    bool isStreamed() const
    {
        return !isPaged() && m_page.skip == 0 && !m_context.out.isJson() && !m_context.isSet("l");
    }

    QList<VellDocument> entriesOf(const QString &id, int skip, int limit)
    {
        VellDocumentConditon condition;
        condition.parentId = id;
        constexpr int MostEntries = 100000; // limit of one list
        if (skip > 0 && limit == 0)
            limit = MostEntries;
        Session &session = m_context.session();
        return session.await(session.documents().list(condition, m_page.sort, skip, limit));
    }

    QList<VellDocument> showEntries(const RemotePath &path, const QString &id)
    {
        const QList<VellDocument> entries = entriesOf(id, m_page.skip, m_page.limit);
        show(path, entries, isPaged() ? countIn(id) : entries.size());
        return entries;
    }

    //! Prints the first names of a large folder while the service prepares the whole list. That list is
    //! requested with one request, because entries could move between pages.
    QList<VellDocument> streamNames(const RemotePath &path, const QString &id)
    {
        const QList<VellDocument> first = entriesOf(id, 0, FirstNames);
        show(path, first, first.size());
        if (first.size() < FirstNames)
            return first;
        m_context.out.flush();
        QSet<QString> shown;
        for (const VellDocument &entry : first)
            shown.insert(entry._id);
        const QList<VellDocument> entries = entriesOf(id, 0, 0);
        QList<VellDocument> rest;
        for (const VellDocument &entry : entries) {
            if (!shown.contains(entry._id))
                rest.append(entry);
        }
        printNames(rest, m_context.out);
        return entries;
    }

    int countIn(const QString &id)
    {
        VellDocumentConditon condition;
        condition.parentId = id;
        return m_context.session().await(m_context.session().documents().count(condition));
    }

    void show(const RemotePath &path, const QList<VellDocument> &entries, int total)
    {
        if (m_context.out.isJson()) {
            addToResult(path, entries, total);
            return;
        }
        if (m_isTitled) {
            if (m_hasShown)
                m_context.out.print(QString());
            m_hasShown = true;
            m_context.out.print(Output::strong(printedPath(path) + QLatin1Char(':')));
        }
        if (entries.isEmpty())
            m_context.out.note(Text::tr("%1 is empty.").arg(path.text()));
        else if (m_context.isSet("l"))
            m_context.out.print(longTable(entries, m_context.session()));
        else
            printNames(entries, m_context.out);
        if (isPaged() && entries.size() < total) {
            m_context.out.note(Text::tr("%1 to %2 of %3.")
                                   .arg(entries.isEmpty() ? 0 : m_page.skip + 1)
                                   .arg(m_page.skip + entries.size())
                                   .arg(total));
        }
    }

    //! \param isItself true if \a entries contains the file at \a path itself
    void addToResult(const RemotePath &path, const QList<VellDocument> &entries, int total,
                     bool isItself = false)
    {
        QJsonArray array;
        for (const VellDocument &entry : entries)
            array.append(
                documentJson(entry, isItself ? path.text() : path.child(entry.name).text()));
        m_result.append(QJsonObject{{QStringLiteral("path"), path.text()},
                                    {QStringLiteral("total"), total},
                                    {QStringLiteral("entries"), array}});
        m_context.out.setResult({{QStringLiteral("folders"), m_result}});
    }

    Context &m_context;
    const Page m_page;
    QJsonArray m_result;
    bool m_isTitled = false;
    bool m_hasShown = false;
};

void run(Context &context)
{
    Page page{context.number("limit", 0), context.number("skip", 0), readSort(context)};
    QStringList paths = context.arguments();
    if (paths.isEmpty())
        paths.append(QStringLiteral("/"));
    const QList<NamedDocument> found = namedDocuments(context, paths);
    Lister lister(context, page);
    if (found.size() > 1 || context.isSet("recursive"))
        lister.setTitled();
    lister.listFiles(found);
    for (const NamedDocument &named : found) {
        if (isFolder(named.document))
            lister.list(named.path, named.document);
    }
}

} // namespace

const Command &lsCommand()
{
    static const Command command{
        "ls",
        "[-lR] [PATH...]",
        QT_TRANSLATE_NOOP("velldoc", "list folders"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Lists the entries of each folder PATH, or of the top level: folders first, then in "
            "the order set by \"velldoc order\", then the last changed first. In PATH * matches "
            "any text, ? one character and [abc] one of these characters; use quotes. A name that "
            "contains these characters itself takes precedence."),
        {
            {"l,long", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Print a table with size, time and user of the last change.")},
            {"R,recursive", nullptr, QT_TRANSLATE_NOOP("velldoc", "Include subfolders.")},
            {"s,sort", "FIELD",
             QT_TRANSLATE_NOOP("velldoc", "Sort by name, size, created, updated or order."),
             "name size created updated order"},
            {"r,reverse", nullptr, QT_TRANSLATE_NOOP("velldoc", "Sort in reverse order.")},
            {"limit", "N",
             QT_TRANSLATE_NOOP("velldoc", "List at most this number of entries of each folder.")},
            {"skip", "N",
             QT_TRANSLATE_NOOP("velldoc", "Skip this number of entries of each folder.")},
        },
        {
            {"velldoc ls -l /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "a folder with sizes and times")},
            {"velldoc ls -l --sort size --limit 10 /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "its ten largest files")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
