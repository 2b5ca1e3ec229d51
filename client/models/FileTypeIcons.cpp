#include <models/FileTypeIcons.h>

#include <document_model/VellDocument.h>
#include <file_types/FileTypes.h>

QIcon FileTypeIcons::icon(const VellDocument &document)
{
    QIcon &icon = m_icons[VellPubDoc::getFileTypeIconPath(document)];
    if (icon.isNull())
        icon = VellPubDoc::getFileTypeIcon(document);
    return icon;
}
