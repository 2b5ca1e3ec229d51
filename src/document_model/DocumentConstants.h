#pragma once

#include <velldocumentdata_export.h>

#include <QString>
#include <QStringList>

//! \file
//! \brief Constants that the library and its clients share: categories, suffixes, query keys.
//!
//! Initialized when the library is loaded, before the code of a program that links it runs, and never changed.
//!
//! \since 0.1

//! \name File categories
//! The results of VellPubDoc::getFileType().
//! @{
VELLDOCUMENTDATA_EXPORT extern const QString FILE_TYPE_IMAGE;
VELLDOCUMENTDATA_EXPORT extern const QString FILE_TYPE_OFFICE;
VELLDOCUMENTDATA_EXPORT extern const QString FILE_TYPE_DWG;
VELLDOCUMENTDATA_EXPORT extern const QString FILE_TYPE_VIDEO;
VELLDOCUMENTDATA_EXPORT extern const QString FILE_TYPE_OTHER;
//! @}

//! \name Known suffixes
//! Without the dot. SUFFIX_DWG and FILE_TYPE_DWG are different constants that happen to have the same text.
//! @{
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_7Z;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_AVI;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_BMP;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DOC;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DOCX;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DOT;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DWF;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DWG;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DWS;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DWT;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_DXF;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_JPEG;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_JPG;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_MID;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_MP3;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_MP4;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_PDF;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_PNG;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_PPT;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_PPTX;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_RAR;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_RMVB;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_TXT;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_WAV;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_WMV;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_XLS;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_XLSX;
VELLDOCUMENTDATA_EXPORT extern const QString SUFFIX_ZIP;
//! @}

//! \name Suffixes of one kind
//! VellPubDoc::getFileType() uses tables of its own: "xls" and "txt" are in no list here.
//! @{
VELLDOCUMENTDATA_EXPORT extern const QStringList DRAWING_SUFFIXES;
VELLDOCUMENTDATA_EXPORT extern const QStringList SHEET_SUFFIXES;
VELLDOCUMENTDATA_EXPORT extern const QStringList MEDIA_SUFFIXES;
VELLDOCUMENTDATA_EXPORT extern const QStringList OFFICE_SUFFIXES;
VELLDOCUMENTDATA_EXPORT extern const QStringList IMAGE_SUFFIXES;
//! @}

//! \name Query key words
//! Fields that the service accepts in conditions and sort keys. KEY_FILE_SIZE is a path into the nested "file" object and is
//! sent unchanged.
//! @{
VELLDOCUMENTDATA_EXPORT extern const QString KEY_CATEGORY;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_CREATED_AT;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_DOCUMENTS;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_DOMAIN;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_EXTEND_PROPERTIES;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_FILE;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_FILE_SIZE;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_FORMS;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_LABEL_ID;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_TAG;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_MARK;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_NAME;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_PROPERTIES;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_QRCODE;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_SPREADSHEETS;
VELLDOCUMENTDATA_EXPORT extern const QString KEY_UPDATED_AT;
//! @}

//! \name Kept for clients
//! Not used by the library.
//! @{
VELLDOCUMENTDATA_EXPORT extern const QString SIZE_LIMIT_TEXT;
VELLDOCUMENTDATA_EXPORT extern const QString MONTH_FORMAT_TEXT;
//! @}
