#include <document_service/ServiceRequest.h>
#include <document_service/VellDocService.h>

namespace VellDocService {

namespace {

// The service sends the strings "true" and "false": a JSON boolean grants nothing.
bool isGranted(const QString &url)
{
    return get(url).object().value(QLatin1String("value")).toString() == QLatin1String("true");
}

} // namespace

// The identifier is the first argument of the functions and the last one of the addresses.

bool canDeleteDocFolder(const QString &rId, const QString &category)
{
    return isGranted(projectUrl(QStringLiteral("projects/%1/auth?key=delete&category=%2&rId=%3"))
                         .arg(category)
                         .arg(rId));
}

bool canDeleteSelf(const QString &category)
{
    return isGranted(
        projectUrl(QStringLiteral("projects/%1/auth?key=delete-self&category=%2")).arg(category));
}

bool canDownloadDocFolder(const QString &rId, const QString &category)
{
    return isGranted(projectUrl(QStringLiteral("projects/%1/auth?key=download&category=%2&rId=%3"))
                         .arg(category)
                         .arg(rId));
}

bool canEditDocFolder(const QString &rId, const QString &category)
{
    return isGranted(projectUrl(QStringLiteral("projects/%1/auth?key=edit&category=%2&rId=%3"))
                         .arg(category)
                         .arg(rId));
}

bool canEditSelf(const QString &category)
{
    return isGranted(
        projectUrl(QStringLiteral("projects/%1/auth?key=edit-self&category=%2")).arg(category));
}

bool canUploadDocFolder(const QString &rId, const QString &category)
{
    return isGranted(projectUrl(QStringLiteral("projects/%1/auth?key=upload&category=%2&rId=%3"))
                         .arg(category)
                         .arg(rId));
}

} // namespace VellDocService
