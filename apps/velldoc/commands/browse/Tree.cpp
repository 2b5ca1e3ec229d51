#include <document_model/DocumentConversions.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/NaturalOrder.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QJsonArray>

#include <algorithm>
#include <limits>

namespace velldoc {

namespace {

//! Returns everything below \a folder as a tree; its entries are the roots.
QList<VellDocument> readTree(Context &context, const VellDocument &folder)
{
    VellDocumentConditon condition;
    condition.parentId = folder._id;
    condition.selectTree = true;
    QList<VellDocument> documents = context.tree().list(condition);
    for (VellDocument &document : documents) {
        if (document.parentId == folder._id)
            document.parentId.clear();
    }
    std::sort(documents.begin(), documents.end(), [](const VellDocument &a, const VellDocument &b) {
        return a.type == b.type ? compareNaturally(a.name, b.name) < 0 : a.type < b.type;
    });
    VellPubDoc::makeDocListTree(documents);
    return documents;
}

class Drawing
{
public:
    explicit Drawing(const Context &context)
        : m_context(context), m_depth(context.number("depth", std::numeric_limits<int>::max())),
          m_foldersOnly(context.isSet("directories"))
    {}

    QJsonArray drawAll(const QList<VellDocument> &documents)
    {
        return m_depth > 0 ? draw(documents, {}, 1) : QJsonArray();
    }

    QString summary() const
    {
        return Text::tr("%n folder(s)", nullptr, m_folders) + QLatin1String(", ")
            + Text::tr("%n file(s)", nullptr, m_files);
    }

private:
    QJsonArray draw(const QList<VellDocument> &documents, const QString &margin, int depth)
    {
        QJsonArray array;
        QList<VellDocument> shown;
        for (const VellDocument &document : documents) {
            if (isFolder(document) || !m_foldersOnly)
                shown.append(document);
        }
        for (int i = 0; i < shown.size(); ++i) {
            const VellDocument &document = shown.at(i);
            const bool isLast = i + 1 == shown.size();
            const QString branch = isLast ? QStringLiteral("└── ") : QStringLiteral("├── ");
            m_context.out.print(margin + branch + label(document));
            ++(isFolder(document) ? m_folders : m_files);
            const QString below =
                margin + (isLast ? QStringLiteral("    ") : QStringLiteral("│   "));
            QJsonObject object{{QStringLiteral("id"), document._id},
                               {QStringLiteral("name"), document.name},
                               {QStringLiteral("type"), document.type}};
            if (!isFolder(document))
                object.insert(QStringLiteral("size"), document.fileSize);
            else if (depth < m_depth)
                object.insert(QStringLiteral("children"),
                              draw(document.children, below, depth + 1));
            array.append(object);
        }
        return array;
    }

    QString label(const VellDocument &document) const
    {
        if (isFolder(document) || !m_context.isSet("l"))
            return printable(shownName(document));
        return printable(document.name) + QStringLiteral("  (%1)").arg(sizeText(document.fileSize));
    }

    const Context &m_context;
    const int m_depth;
    const bool m_foldersOnly;
    int m_folders = 0;
    int m_files = 0;
};

void run(Context &context)
{
    const RemotePath path =
        RemotePath::parse(context.arguments(0, 1).value(0, QStringLiteral("/")));
    const VellDocument folder = context.tree().findFolder(path);
    const QList<VellDocument> documents = readTree(context, folder);
    Drawing drawing(context);
    context.out.print(Output::strong(printedPath(path)));
    const QJsonArray children = drawing.drawAll(documents);
    context.out.setResult(
        {{QStringLiteral("path"), path.text()}, {QStringLiteral("children"), children}});
    context.out.note(drawing.summary());
}

} // namespace

const Command &treeCommand()
{
    static const Command command{
        "tree",
        "[-ld] [PATH]",
        QT_TRANSLATE_NOOP("velldoc", "print a folder as a tree"),
        QT_TRANSLATE_NOOP("velldoc", "Prints the folder PATH, or the whole project, as a tree."),
        {
            {"l,long", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Print the sizes after the names of files.")},
            {"d,directories", nullptr, QT_TRANSLATE_NOOP("velldoc", "List only folders.")},
            {"depth", "N",
             QT_TRANSLATE_NOOP("velldoc",
                               "Show only this number of levels; 0 for the folder itself.")},
        },
        {{"velldoc tree -d --depth 2 /",
          QT_TRANSLATE_NOOP("velldoc", "the upper two levels of folders")}},
        run,
    };
    return command;
}

} // namespace velldoc
