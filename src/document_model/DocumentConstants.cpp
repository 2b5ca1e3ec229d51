#include <document_model/DocumentConstants.h>

// In one source file, with the words before the lists that contain them: within a file objects are
// initialized in the order of their definitions.

const QString FILE_TYPE_IMAGE = QStringLiteral("image");
const QString FILE_TYPE_OFFICE = QStringLiteral("office");
const QString FILE_TYPE_DWG = QStringLiteral("dwg");
const QString FILE_TYPE_VIDEO = QStringLiteral("video");
const QString FILE_TYPE_OTHER = QStringLiteral("other");

const QString SUFFIX_7Z = QStringLiteral("7z");
const QString SUFFIX_AVI = QStringLiteral("avi");
const QString SUFFIX_BMP = QStringLiteral("bmp");
const QString SUFFIX_DOC = QStringLiteral("doc");
const QString SUFFIX_DOCX = QStringLiteral("docx");
const QString SUFFIX_DOT = QStringLiteral("dot");
const QString SUFFIX_DWF = QStringLiteral("dwf");
const QString SUFFIX_DWG = QStringLiteral("dwg");
const QString SUFFIX_DWS = QStringLiteral("dws");
const QString SUFFIX_DWT = QStringLiteral("dwt");
const QString SUFFIX_DXF = QStringLiteral("dxf");
const QString SUFFIX_JPEG = QStringLiteral("jpeg");
const QString SUFFIX_JPG = QStringLiteral("jpg");
const QString SUFFIX_MID = QStringLiteral("mid");
const QString SUFFIX_MP3 = QStringLiteral("mp3");
const QString SUFFIX_MP4 = QStringLiteral("mp4");
const QString SUFFIX_PDF = QStringLiteral("pdf");
const QString SUFFIX_PNG = QStringLiteral("png");
const QString SUFFIX_PPT = QStringLiteral("ppt");
const QString SUFFIX_PPTX = QStringLiteral("pptx");
const QString SUFFIX_RAR = QStringLiteral("rar");
const QString SUFFIX_RMVB = QStringLiteral("rmvb");
const QString SUFFIX_TXT = QStringLiteral("txt");
const QString SUFFIX_WAV = QStringLiteral("wav");
const QString SUFFIX_WMV = QStringLiteral("wmv");
const QString SUFFIX_XLS = QStringLiteral("xls");
const QString SUFFIX_XLSX = QStringLiteral("xlsx");
const QString SUFFIX_ZIP = QStringLiteral("zip");

const QStringList DRAWING_SUFFIXES{SUFFIX_DWG, SUFFIX_DWF, SUFFIX_DXF, SUFFIX_DWS, SUFFIX_DWT};
const QStringList SHEET_SUFFIXES{SUFFIX_XLSX};
const QStringList MEDIA_SUFFIXES{SUFFIX_MP3,  SUFFIX_WAV, SUFFIX_MID, SUFFIX_AVI,
                                 SUFFIX_RMVB, SUFFIX_MP4, SUFFIX_WMV};
const QStringList OFFICE_SUFFIXES{SUFFIX_DOC, SUFFIX_DOCX, SUFFIX_DOT,
                                  SUFFIX_PDF, SUFFIX_PPT,  SUFFIX_PPTX};
const QStringList IMAGE_SUFFIXES{SUFFIX_BMP, SUFFIX_JPG, SUFFIX_JPEG, SUFFIX_PNG};

const QString KEY_CATEGORY = QStringLiteral("category");
const QString KEY_CREATED_AT = QStringLiteral("createdAt");
const QString KEY_DOCUMENTS = QStringLiteral("documents");
const QString KEY_DOMAIN = QStringLiteral("domain");
const QString KEY_EXTEND_PROPERTIES = QStringLiteral("extendProperties");
const QString KEY_FILE = QStringLiteral("file");
const QString KEY_FILE_SIZE = QStringLiteral("file.fileSize");
const QString KEY_FORMS = QStringLiteral("forms");
const QString KEY_LABEL_ID = QStringLiteral("labelId");
const QString KEY_TAG = QStringLiteral("tag");
const QString KEY_MARK = QStringLiteral("mark");
const QString KEY_NAME = QStringLiteral("name");
const QString KEY_PROPERTIES = QStringLiteral("properties");
const QString KEY_QRCODE = QStringLiteral("qrcode");
const QString KEY_SPREADSHEETS = QStringLiteral("spreadsheets");
const QString KEY_UPDATED_AT = QStringLiteral("updatedAt");

const QString SIZE_LIMIT_TEXT = QStringLiteral("10G");
const QString MONTH_FORMAT_TEXT = QStringLiteral("MMM");
