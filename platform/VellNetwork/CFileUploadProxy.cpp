#include <VellNetwork/CFileUploadProxy.h>

#include "FileBodyDevice.h"

#include <QFileInfo>
#include <QHttpMultiPart>
#include <QHttpPart>
#include <QMimeDatabase>

#include <memory>

namespace {

// As browsers do: the name in UTF-8, with only those characters escaped that would end the quoted string.
QByteArray fileNameForHeader(const QString &name)
{
    return name.toUtf8().replace('"', "%22").replace('\r', "%0D").replace('\n', "%0A");
}

} // namespace

QHttpMultiPart *CFileUploadProxy::getFileHttpMultiPart(QFile **file, const QString &path)
{
    // Opening a pipe would block.
    const QFileInfo info(path);
    if (!info.isFile())
        return nullptr;
    auto opened = std::make_unique<QFile>(path);
    if (!opened->open(QIODevice::ReadOnly))
        return nullptr;

    auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
    QHttpPart part;
    part.setRawHeader("Content-Disposition",
                      "form-data; name=\"file\"; filename=\"" + fileNameForHeader(info.fileName())
                          + '"');
    part.setRawHeader("Content-Type", QMimeDatabase().mimeTypeForFile(info).name().toLatin1());
    part.setBodyDevice(new FileBodyDevice(opened.get(), body));
    body->append(part);
    *file = opened.release();
    return body;
}
