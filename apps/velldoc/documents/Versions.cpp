#include <velldoc/documents/Versions.h>

#include <velldoc/program/Text.h>
#include <velldoc/session/Session.h>

namespace velldoc {

QList<VellDocument> versionsOf(Session &session, const VellDocument &document)
{
    return session.await(session.documents().history(document._id));
}

VellDocument versionOf(Session &session, const VellDocument &document, int number)
{
    const QList<VellDocument> versions = versionsOf(session, document);
    if (number < 1 || number > versions.size()) {
        throw Failure(
            ExitNotFound,
            Text::tr("%1 has %n version(s), so there is no version %2.", nullptr, versions.size())
                .arg(document.name, QString::number(number)));
    }
    return versions.at(versions.size() - number);
}

} // namespace velldoc
