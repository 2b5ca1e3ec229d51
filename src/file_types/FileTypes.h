#pragma once

#include <velldocumentdata_export.h>

#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QStringList>

struct VellDocument;

//! \file
//! \brief What the client's views and dialogs show of a file: category, name, icons, filters.
//!
//! Categories, list icons and dialog filters are three tables that differ on purpose: "jpeg" is a
//! picture for getFileType(), has no icon and is in no filter; "dwf" is a drawing with an icon
//! and in no filter; archives have an icon and no category or filter of their own.
//!
//! The pictures are resources of the program, which must carry them under these paths:
//!
//! - `:/item/Resources/item/folder.png`
//! - `:/item/Resources/item/type/`: `pic.png`, `word.png`, `excel.png`, `ppt.png`, `pdf.png`,
//!   `txt.png`, `music.png`, `video.png`, `dwg.png`, `zip.png`, `unknown.png`
//! - `:/DocumentManagement/Resources/`: `file_show.png`, `drawing _show.png` (with the blank),
//!   `movie_show.png`, `other_show.png`

namespace VellPubDoc {

//! The category of files with the \a suffix (without the dot, in any case): FILE_TYPE_IMAGE,
//! FILE_TYPE_OFFICE, FILE_TYPE_DWG, FILE_TYPE_VIDEO or, for all others and an empty one,
//! FILE_TYPE_OTHER.
//!
//! Sound counts as video, as the name of that category says. Reentrant.
VELLDOCUMENTDATA_EXPORT QString getFileType(const QString &suffix);

//! The name of a \a category for the user, in the language of the program. Only the exact words
//! that getFileType() gives have names of their own; any other text has that of FILE_TYPE_OTHER.
//!
//! Reentrant.
VELLDOCUMENTDATA_EXPORT QString getFileTypeName(const QString &category);

//! The resource path of the small icon of \a doc in lists, decided by its `type` (exactly "dir" is
//! a folder) and then by its `suffix`, in any case. Never empty.
//!
//! Reentrant.
VELLDOCUMENTDATA_EXPORT QString getFileTypeIconPath(const VellDocument &doc);

//! The icon at getFileTypeIconPath(). Only on the GUI thread.
VELLDOCUMENTDATA_EXPORT QIcon getFileTypeIcon(const VellDocument &doc);

//! A preview of the local file \a path: the picture itself, in its full size, when the suffix is
//! that of a picture, else the picture of its category.
//!
//! What a picture is decoded as is decided by its content: a JPEG named `.png` is shown. The
//! orientation that a camera noted is not applied. A file that cannot be read or decoded gives a
//! null pixmap; a JPEG that breaks off may give its readable part.
//!
//! Blocks while the file is decoded, and holds four bytes for each pixel: 12,000 x 12,000 pixels
//! take 550 MiB (a grey one 690 MiB while it is read) and, on a desktop machine, one to two
//! seconds as a PNG and a third of a second as a JPEG. Nothing limits the size; a picture that the
//! memory cannot hold gives a null pixmap. Only on the GUI thread.
VELLDOCUMENTDATA_EXPORT QPixmap getFileIcon(const QString &path);

//! The ten name filters of the open-file dialog. Only the first, which lets everything pass, is
//! translated; their texts are fixed to the last blank, because clients compare them with the
//! filter that the user selected.
//!
//! Reentrant.
VELLDOCUMENTDATA_EXPORT QStringList getNameFilters();

} // namespace VellPubDoc
