#include <velldoc/Context.h>
#include <velldoc/GlobalOptions.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/Terminal.h>

#include <cstdio>

namespace velldoc {

namespace {

QStringList optionWords(const QVector<CommandOption> &options)
{
    QStringList words;
    for (const CommandOption &option : options)
        words.append(QLatin1String("--")
                     + QString::fromLatin1(option.names).section(QLatin1Char(','), -1));
    return words;
}

QStringList commandWords()
{
    QStringList words;
    for (const Command *const command : allCommands())
        words.append(QString::fromLatin1(command->name));
    return words;
}

//! The entries of the folder that \a start names so far; folders end with "/".
QStringList remotePaths(Context &context, const QString &start)
{
    QString folderText = start.left(start.lastIndexOf(QLatin1Char('/')) + 1);
    if (start.isEmpty())
        folderText = QStringLiteral("/");
    const VellDocument folder = context.tree().findFolder(RemotePath::parse(folderText));
    QStringList words;
    const QList<VellDocument> entries = context.tree().entries(folder._id);
    for (const VellDocument &entry : entries) {
        words.append(folderText + entry.name + QLatin1String(isFolder(entry) ? "/" : ""));
    }
    return words;
}

//! What can stand at the end of \a words, which begin behind the program's name.
QStringList candidates(Context &context, const QStringList &words)
{
    const QString &last = words.constLast();
    const Command *command = nullptr;
    for (int i = 0; i + 1 < words.size() && command == nullptr; ++i)
        command = findCommand(words.at(i));
    if (last.startsWith(QLatin1Char('-')))
        return optionWords(globalOptions())
            + (command ? optionWords(command->options) : QStringList());
    if (command == nullptr || command == &helpCommand())
        return commandWords();
    QStringList all;
    if (words.indexOf(QString::fromLatin1(command->name)) + 2 == words.size()) {
        for (const char *const action : command->actions)
            all.append(QString::fromLatin1(action));
    }
    return all + remotePaths(context, last);
}

void run(Context &context)
{
    QStringList words = context.arguments();
    if (words.isEmpty())
        words.append(QString());
    try {
        const QStringList all = candidates(context, words);
        for (const QString &word : all) {
            if (word.startsWith(words.constLast()))
                terminal::write(stdout, word + QLatin1Char('\n'));
        }
    } catch (const Failure &) {
        // A shell that completes has no place for messages.
    }
}

} // namespace

const Command &completeCommand()
{
    static const Command command{
        "__complete",
        "WORD...",
        QT_TRANSLATE_NOOP("velldoc", "what can stand next, for shells"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints what the last WORD of a command line can become, one a line."),
        {},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
