#pragma once

#include <velldocumentdata_export.h>

#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QStringList>

struct VellDocument;

//! \file
//! \brief Categories, names and icons of file types, and filters for dialogs.
//!
//! Categories, list icons and dialog filters are three tables that differ on purpose: getFileType() returns the category of
//! images for "jpeg", which has no icon and is in no filter; "dwf" is a drawing with an icon and is in no filter; archives have
//! an icon, but no category or filter of their own.
//!
//! The images are resources of the program, which must contain them under these paths:
//!
//! - `:/item/Resources/item/folder.png`
//! - `:/item/Resources/item/type/`: `pic.png`, `word.png`, `excel.png`, `ppt.png`, `pdf.png`,
//!   `txt.png`, `music.png`, `video.png`, `dwg.png`, `zip.png`, `unknown.png`
//! - `:/DocumentManagement/Resources/`: `file_show.png`, `drawing _show.png` (with the space),
//!   `movie_show.png`, `other_show.png`
//!
//! \since 0.1

namespace VellPubDoc {

//! Returns the category of files with the \a suffix (without the dot, not case-sensitive): FILE_TYPE_IMAGE, FILE_TYPE_OFFICE,
//! FILE_TYPE_DWG, FILE_TYPE_VIDEO or, for all others and an empty suffix, FILE_TYPE_OTHER.
//!
//! Audio files are in the category of videos, as its name says. Reentrant.
//! \sa getFileTypeName()
VELLDOCUMENTDATA_EXPORT QString getFileType(const QString &suffix);

//! Returns the translated name of a \a category for the user. Only the values that getFileType() returns have names of their
//! own; for any other text the name of FILE_TYPE_OTHER is returned.
//!
//! Reentrant.
VELLDOCUMENTDATA_EXPORT QString getFileTypeName(const QString &category);

//! Returns the resource path of the small icon of \a doc in lists, by its `type` ("dir" for a folder) and its `suffix`, which is
//! not case-sensitive. Never empty.
//!
//! Reentrant.
//! \sa getFileTypeIcon()
VELLDOCUMENTDATA_EXPORT QString getFileTypeIconPath(const VellDocument &doc);

//! Returns the icon at getFileTypeIconPath(). To be called on the GUI thread.
VELLDOCUMENTDATA_EXPORT QIcon getFileTypeIcon(const VellDocument &doc);

//! Returns a preview of the local file \a path: the image itself, in its full size, if the suffix is that of an image, otherwise
//! the image of its category.
//!
//! The format is detected from the content: a JPEG named `.png` is shown. The orientation in the metadata is not applied. A file
//! that cannot be read or decoded gives a null pixmap; a truncated JPEG may give its readable part.
//!
//! Blocks while the file is decoded, and needs four bytes of memory for each pixel: 12,000 x 12,000 pixels take 550 MiB (a
//! greyscale image 690 MiB while it is read) and, on a desktop machine, one to two seconds as a PNG and a third of a second as a
//! JPEG. The size is not limited; an image that does not fit into memory gives a null pixmap. To be called on the GUI thread.
VELLDOCUMENTDATA_EXPORT QPixmap getFileIcon(const QString &path);

//! Returns the ten name filters of the dialog for opening files. Only the first one, which matches all files, is translated.
//! The texts are fixed, including their spaces, because clients compare them with the filter that the user has selected.
//!
//! Reentrant.
VELLDOCUMENTDATA_EXPORT QStringList getNameFilters();

} // namespace VellPubDoc
