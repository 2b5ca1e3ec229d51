#include <desktop/window/Rights.h>

#include <document_model/VellDocument.h>
#include <session/VellSession.h>

namespace desktop {

QString rights::download()
{
    return QStringLiteral("download");
}

QString rights::edit()
{
    return QStringLiteral("edit");
}

QString rights::remove()
{
    return QStringLiteral("delete");
}

QString rights::upload()
{
    return QStringLiteral("upload");
}

bool rights::may(const VellDocument &document, const QString &right)
{
    return document.auths.value(right, true);
}

bool rights::isFolder(const VellDocument &document)
{
    return document.type == QLatin1String("dir");
}

QString rights::role(const VellSession &session)
{
    for (const VellProject &project : session.user().projects) {
        if (project.id == session.projectId())
            return project.role;
    }
    return {};
}

bool rights::mayPurge(const VellSession &session)
{
    const QString own = role(session);
    return own.isEmpty() || own == QLatin1String("owner");
}

bool rights::mayShare(const VellSession &session)
{
    return role(session) != QLatin1String("viewer");
}

} // namespace desktop
