#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QHash>
#include <QJsonArray>

namespace velldoc {

namespace {

struct Use
{
    qint64 bytes = 0;
    int files = 0;
};

//! \brief The total sizes of a folder and its subfolders.
class Uses
{
public:
    Uses(Context &context, const VellDocument &root)
    {
        VellDocumentConditon condition;
        condition.parentId = root._id;
        condition.selectTree = true;
        const QList<VellDocument> documents = context.tree().list(condition);
        for (const VellDocument &document : documents)
            m_below[document.parentId].append(document);
    }

    Use sum(const VellDocument &document) const
    {
        if (!isFolder(document))
            return {document.fileSize, 1};
        Use use;
        const QList<VellDocument> entries = m_below.value(document._id);
        for (const VellDocument &entry : entries) {
            const Use part = sum(entry);
            use.bytes += part.bytes;
            use.files += part.files;
        }
        return use;
    }

    QList<VellDocument> entries(const VellDocument &folder) const
    {
        return m_below.value(folder._id);
    }

private:
    QHash<QString, QList<VellDocument>> m_below;
};

//! \brief The lines of the output.
class Lines
{
public:
    explicit Lines(Context &context) : m_depth(context.number("depth", 0))
    {
        m_table.addColumn(Text::tr("Size"), Qt::AlignRight);
        m_table.addColumn(Text::tr("Files"), Qt::AlignRight);
        m_table.addColumn(Text::tr("Path"), Qt::AlignLeft, Table::Fit::Shrinks);
    }

    void add(const Uses &uses, const VellDocument &document, const RemotePath &path, int depth = 0)
    {
        if (isFolder(document) && depth < m_depth) {
            const QList<VellDocument> entries = uses.entries(document);
            for (const VellDocument &entry : entries) {
                if (isFolder(entry))
                    add(uses, entry, path.child(entry.name), depth + 1);
            }
        }
        const Use use = uses.sum(document);
        m_table.addRow({sizeText(use.bytes), QString::number(use.files), path.text()});
        m_json.append(QJsonObject{{QStringLiteral("path"), path.text()},
                                  {QStringLiteral("size"), use.bytes},
                                  {QStringLiteral("files"), use.files}});
    }

    const Table &table() const { return m_table; }
    const QJsonArray &json() const { return m_json; }

private:
    const int m_depth;
    Table m_table;
    QJsonArray m_json;
};

void run(Context &context)
{
    QStringList texts = context.arguments();
    if (texts.isEmpty())
        texts.append(QStringLiteral("/"));
    const QList<NamedDocument> named = namedDocuments(context, texts);
    Lines lines(context);
    for (const NamedDocument &entry : named)
        lines.add(Uses(context, entry.document), entry.document, entry.path);
    context.out.setResult({{QStringLiteral("folders"), lines.json()}});
    context.out.print(lines.table());
}

} // namespace

const Command &duCommand()
{
    static const Command command{
        "du",
        "[PATH...]",
        QT_TRANSLATE_NOOP("velldoc", "print the sizes of folders"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints the total size of the current versions in each folder PATH, or "
                          "in the whole project."),
        {{"depth", "N",
          QT_TRANSLATE_NOOP("velldoc", "Include subfolders, down to this number of levels.")}},
        {{"velldoc du --depth 1", QT_TRANSLATE_NOOP("velldoc", "find the largest folder")}},
        run,
    };
    return command;
}

} // namespace velldoc
