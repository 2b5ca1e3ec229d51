#include <velldoc/commands/Commands.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

namespace velldoc {

namespace {

using Pairs = QList<QPair<QString, QString>>;

QString yesOrNo(bool isYes)
{
    return isYes ? Text::tr("yes") : Text::tr("no");
}

QString grantedRights(const VellDocument &document)
{
    QStringList granted;
    for (auto it = document.auths.begin(); it != document.auths.end(); ++it) {
        if (it.value())
            granted.append(it.key());
    }
    return granted.join(QStringLiteral(", "));
}

Pairs describe(const VellDocument &document, const QString &path, Session &session)
{
    const bool isFile = document.type == QLatin1String("file");
    Pairs pairs{
        {Text::tr("Path"), path},
        {Text::tr("Identifier"), QStringLiteral("id:") + document._id},
        {Text::tr("Type"), kindText(document)},
    };
    if (isFile) {
        pairs.append({Text::tr("Size"),
                      Text::tr("%1 (%2 bytes)")
                          .arg(sizeText(document.fileSize), QString::number(document.fileSize))});
    }
    pairs += Pairs{
        {Text::tr("Category"), document.category},
        {Text::tr("Created"), timeText(document.createdAt)},
        {Text::tr("Created by"), session.userText(document.createdBy)},
        {Text::tr("Changed"), timeText(document.updatedAt)},
        {Text::tr("Changed by"), session.userText(document.updatedBy)},
        {Text::tr("Favourite"), yesOrNo(document.favorite)},
        {Text::tr("Remark"), document.remark},
        {Text::tr("You may"), grantedRights(document)},
    };
    return pairs;
}

void print(const Pairs &pairs, Output &output)
{
    int column = 0;
    for (const auto &pair : pairs)
        column = qMax(column, displayWidth(pair.first));
    column += 2;
    const int width = terminal::width(stdout);
    const QString newLine = QLatin1Char('\n') + QString(column, QLatin1Char(' '));
    for (const auto &pair : pairs) {
        const QString value = printable(pair.second);
        const QStringList lines = width > 0 ? wrapped(value, width - column) : QStringList{value};
        if (!value.isEmpty())
            output.print(padded(pair.first + QLatin1Char(':'), column) + lines.join(newLine));
    }
}

void run(Context &context)
{
    const QList<NamedDocument> named = namedDocuments(context, context.arguments(1));
    QJsonArray described;
    for (const NamedDocument &entry : named) {
        const VellDocument &found = entry.document;
        if (found._id.isEmpty())
            throw Failure(ExitUsage,
                          Text::tr("The top level is not a document: name an entry in it."));
        Session &session = context.session();
        const VellDocument document = session.await(session.documents().document(found._id));
        const QString path = context.tree().pathOf(document);
        if (!described.isEmpty())
            context.out.print(QString());
        Pairs pairs = describe(document, path, session);
        QJsonObject json = documentJson(document, path);
        if (context.isSet("checksum") && !isFolder(document)) {
            const QString md5 = session.await(session.documents().contentMd5(document.fileId));
            pairs.append({QStringLiteral("MD5"), md5});
            json.insert(QStringLiteral("md5"), md5);
        }
        print(pairs, context.out);
        described.append(json);
        context.out.setResult({{QStringLiteral("documents"), described}});
    }
}

} // namespace

const Command &infoCommand()
{
    static const Command command{
        "info",
        "PATH...",
        QT_TRANSLATE_NOOP("velldoc", "print all fields of a document"),
        QT_TRANSLATE_NOOP("velldoc", "Prints the fields of each document or folder PATH."),
        {{"checksum", nullptr, QT_TRANSLATE_NOOP("velldoc", "Print the MD5 of the content, too.")}},
        {{"velldoc info --json /Drawings/plan.dwg",
          QT_TRANSLATE_NOOP("velldoc", "for a script: identifier, size, dates, rights")}},
        run,
    };
    return command;
}

} // namespace velldoc
