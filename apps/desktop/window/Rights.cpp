#include <desktop/window/Rights.h>

#include <document_model/VellDocument.h>
#include <session/VellSession.h>

namespace desktop {

QString Rights::download()
{
    return QStringLiteral("download");
}

QString Rights::edit()
{
    return QStringLiteral("edit");
}

QString Rights::remove()
{
    return QStringLiteral("delete");
}

QString Rights::upload()
{
    return QStringLiteral("upload");
}

bool Rights::may(const VellDocument &document, const QString &right)
{
    return document.auths.value(right, true);
}

bool Rights::isFolder(const VellDocument &document)
{
    return document.type == QLatin1String("dir");
}

QString Rights::role(const VellSession &session)
{
    for (const VellProject &project : session.user().projects) {
        if (project.id == session.projectId())
            return project.role;
    }
    return {};
}

bool Rights::mayPurge(const VellSession &session)
{
    const QString own = role(session);
    return own.isEmpty() || own == QLatin1String("owner");
}

bool Rights::mayShare(const VellSession &session)
{
    return role(session) != QLatin1String("viewer");
}

} // namespace desktop
