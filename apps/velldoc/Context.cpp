#include <velldoc/Context.h>

#include <velldoc/Text.h>

namespace velldoc {

Session &Context::session()
{
    if (!m_session) {
        m_session = std::make_unique<Session>(settings);
        m_session->open();
    }
    return *m_session;
}

RemoteTree &Context::tree()
{
    if (!m_tree)
        m_tree = std::make_unique<RemoteTree>(session());
    return *m_tree;
}

QStringList Context::arguments(int least, int most) const
{
    QStringList all = arguments();
    if (all.size() < least)
        throw Failure(ExitUsage, Text::tr("Something is missing on the command line."));
    if (most > 0 && all.size() > most)
        throw Failure(ExitUsage,
                      Text::tr("\"%1\" is too much on the command line.").arg(all.at(most)));
    return all;
}

int Context::number(const char *option, int fallback) const
{
    if (!isSet(option))
        return fallback;
    bool isNumber = false;
    const int number = value(option).toInt(&isNumber);
    if (!isNumber || number < 0) {
        throw Failure(ExitUsage,
                      Text::tr("--%1 takes a whole number, not \"%2\".")
                          .arg(QString::fromLatin1(option), value(option)));
    }
    return number;
}

} // namespace velldoc
