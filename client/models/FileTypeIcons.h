#pragma once

#include <QHash>
#include <QIcon>
#include <QString>

struct VellDocument;

//! \brief The icons of documents, each read once. For the GUI thread.
class FileTypeIcons
{
public:
    QIcon icon(const VellDocument &document);

private:
    QHash<QString, QIcon> m_icons; // by resource path
};
