#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RecycleBin.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/program/Usage.h>
#include <velldoc/system/Terminal.h>

#include <QRegularExpression>

#include <cstdio>
#include <utility>

namespace velldoc {

namespace {

//! A possible last word, with a description.
struct Offer
{
    QString word;
    QString help;
};

//! Lets the shell complete local files, too. No word begins with a tab.
const QString localFiles = QStringLiteral("\tfiles");

//! \brief A command line whose last word is being typed.
class Line
{
public:
    explicit Line(const QStringList &words) : m_last(words.constLast())
    {
        const QStringList before = words.mid(0, words.size() - 1);
        bool isOver = false; // the options
        for (int i = 0; i < before.size(); ++i) {
            const QString &word = before.at(i);
            if (!isOver && word == QLatin1String("--")) {
                isOver = true;
            } else if (!isOver && word.startsWith(QLatin1Char('-')) && word.size() > 1) {
                const bool isGlobal = takesValue(globalOptions(), word);
                const bool hasValue = isGlobal || (command && takesValue(command->options, word));
                if (isGlobal || isGlobalWithValue(word))
                    m_settings.append(word);
                if (hasValue && i + 1 == before.size())
                    m_openOption = word;
                else if (hasValue && isGlobal)
                    m_settings.append(before.at(++i));
                else if (hasValue)
                    ++i;
            } else if (!command) {
                command = findCommand(word);
            } else {
                arguments.append(word);
            }
        }
        m_isOver = isOver;
    }

    const QString &last() const { return m_last; }
    //! Returns the options that select the service.
    const QStringList &settings() const { return m_settings; }
    bool isOption() const { return !m_isOver && m_last.startsWith(QLatin1Char('-')); }

    //! Returns the option whose value is the last word; null if there is none.
    const CommandOption *valueOf() const
    {
        QString name = m_openOption;
        if (name.isEmpty() && isOption() && m_last.contains(QLatin1Char('=')))
            name = m_last.section(QLatin1Char('='), 0, 0);
        const QVector<CommandOption> *const own = command ? &command->options : nullptr;
        for (const QVector<CommandOption> *const options : {own, &globalOptions()}) {
            for (int i = 0; options && !name.isEmpty() && i < options->size(); ++i) {
                if (takesValue({options->at(i)}, name))
                    return &options->at(i);
            }
        }
        return nullptr;
    }

    const Command *command = nullptr;
    QStringList arguments;

private:
    static bool isGlobalWithValue(const QString &word)
    {
        return word.contains(QLatin1Char('='))
            && takesValue(globalOptions(), word.section(QLatin1Char('='), 0, 0));
    }

    QString m_last;
    QStringList m_settings;
    QString m_openOption;
    bool m_isOver = false;
};

QList<Offer> optionOffers(const QVector<CommandOption> &options)
{
    QList<Offer> offers;
    for (const CommandOption &option : options)
        offers.append(
            {QLatin1String("--") + QString::fromLatin1(option.names).section(QLatin1Char(','), -1),
             Text::tr(option.help)});
    return offers;
}

QList<Offer> commandOffers()
{
    QList<Offer> offers;
    for (const Command *const command : allCommands())
        offers.append({QString::fromLatin1(command->name), Text::tr(command->summary)});
    return offers;
}

QList<Offer> wordOffers(const QStringList &words)
{
    QList<Offer> offers;
    for (const QString &word : words)
        offers.append({word, {}});
    return offers;
}

QList<Offer> wordOffers(const QVector<const char *> &words)
{
    QList<Offer> offers;
    for (const char *const word : words)
        offers.append({QString::fromLatin1(word), {}});
    return offers;
}

//! Returns the entries of the folder in the path \a start; folders end with "/".
QList<Offer> remoteOffers(Context &context, const QString &start)
{
    QString folderText = start.left(start.lastIndexOf(QLatin1Char('/')) + 1);
    if (start.isEmpty())
        folderText = QStringLiteral("/");
    VellDocumentConditon condition;
    condition.parentId = context.tree().findFolder(RemotePath::parse(folderText))._id;
    condition.selectName = true; // a service returns them fastest
    const QString begin = start.mid(folderText.size());
    if (!begin.isEmpty() && start != QLatin1String("/"))
        condition.searchName = QLatin1Char('^') + QRegularExpression::escape(begin);
    QList<Offer> offers;
    for (const auto &[type, end] : {std::make_pair("dir", "/"), std::make_pair("file", "")}) {
        condition.type = QLatin1String(type);
        const QList<VellDocument> entries = context.tree().list(condition);
        for (const VellDocument &entry : entries)
            offers.append({folderText + entry.name + QLatin1String(end), {}});
    }
    return offers;
}

QList<Offer> argumentOffers(Context &context, const Line &line)
{
    const Command &command = *line.command;
    int position = line.arguments.size();
    if (&command == &helpCommand())
        return position == 0 ? commandOffers() : QList<Offer>();
    if (position == 0 && !command.actions.isEmpty())
        return wordOffers(command.actions);
    if (&command == &trashCommand())
        return wordOffers(namesInBin(context));
    const bool hasAction = !command.actions.isEmpty();
    const QList<UsageWord> words =
        usageWords(command, hasAction ? line.arguments.constFirst() : QString());
    position -= hasAction ? 1 : 0;
    QList<Offer> offers;
    for (int i = 0; i < words.size(); ++i) {
        // After a repeatable argument there may be another one, or the next argument.
        const bool isHere = i == position || (i < position && words.at(i).isRepeated)
            || (i > 0 && i == words.size() - 1 && words.at(i - 1).isRepeated && position >= i);
        if (!isHere)
            continue;
        static const QStringList remote{QStringLiteral("PATH"), QStringLiteral("REMOTE"),
                                        QStringLiteral("SOURCE"), QStringLiteral("TARGET"),
                                        QStringLiteral("FOLDER")};
        const QString &name = words.at(i).name;
        if (remote.contains(name))
            offers += remoteOffers(context, line.last());
        else if (name == QLatin1String("LOCAL"))
            offers.append({localFiles, {}});
        else
            offers += wordOffers(command.words);
    }
    return offers;
}

//! Returns the possible last words of \a line.
QList<Offer> offersFor(Context &context, const Line &line)
{
    if (const CommandOption *const option = line.valueOf()) {
        QString before; // "--kind=" is a part of the word
        if (line.last().startsWith(QLatin1String("--")))
            before = line.last().section(QLatin1Char('='), 0, 0) + QLatin1Char('=');
        if (option->words) {
            QList<Offer> offers =
                wordOffers(QString::fromLatin1(option->words).split(QLatin1Char(' ')));
            for (Offer &offer : offers)
                offer.word.prepend(before);
            return offers;
        }
        const QString value = QString::fromLatin1(option->valueName);
        const bool isFile = value == QLatin1String("FILE") || value == QLatin1String("DIR");
        return isFile && before.isEmpty() ? QList<Offer>{{localFiles, {}}} : QList<Offer>();
    }
    if (line.isOption())
        return optionOffers(line.command ? line.command->options + globalOptions()
                                         : globalOptions());
    return line.command ? argumentOffers(context, line) : commandOffers();
}

void run(Context &context)
{
    QStringList words = context.arguments();
    if (words.isEmpty())
        words.append(QString());
    const Line line(words);
    QCommandLineParser parser;
    addOptions(parser, globalOptions());
    parser.parse(QStringList{QStringLiteral("velldoc")} + line.settings());
    try {
        Context there(completeCommand(), parser, settingsOf(parser), context.out);
        const QList<Offer> offers = offersFor(there, line);
        for (const Offer &offer : offers) {
            if (offer.word != localFiles && !offer.word.startsWith(words.constLast()))
                continue;
            const QString help = offer.help.isEmpty() ? QString() : QLatin1Char('\t') + offer.help;
            terminal::write(stdout, offer.word + help + QLatin1Char('\n'));
        }
    } catch (const Failure &) {
        // Messages would disturb the command line.
    }
}

} // namespace

const Command &completeCommand()
{
    static const Command command{
        "__complete",
        "WORD...",
        QT_TRANSLATE_NOOP("velldoc", "print completions, for shells"),
        QT_TRANSLATE_NOOP(
            "velldoc", "Prints the completions of the last WORD of a command line, one per line."),
        {},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
