#include <transfer/LocalNames.h>

#include <transfer/TransferText.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr int MostNameBytes = 255;

fs::path fsPath(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

//! \param isText set to whether the name on the disk is valid UTF-8
QString nameOf(const fs::path &path, bool *isText)
{
#ifdef Q_OS_WIN
    *isText = true;
    return QString::fromStdWString(path.filename().wstring());
#else
    const QByteArray bytes = QByteArray::fromStdString(path.filename().string());
    const QString name = QFile::decodeName(bytes);
    *isText = QFile::encodeName(name) == bytes;
    return name;
#endif
}

bool hasControlCharacter(const QString &name)
{
    constexpr ushort Delete = 0x7f;
    return std::any_of(name.begin(), name.end(),
                       [](QChar c) { return c < QLatin1Char(' ') || c.unicode() == Delete; });
}

bool isPathStep(const QString &name)
{
    return name == QLatin1String(".") || name == QLatin1String("..");
}

FolderEntry entryOf(const fs::directory_entry &found)
{
    using Kind = VellError::Kind;
    FolderEntry entry;
    bool isText = false;
    entry.localName = nameOf(found.path(), &isText);
    entry.name = entry.localName;
    const auto refuse = [&entry](Kind kind, const QString &text) {
        entry.error = VellError::of(kind, text);
        return entry;
    };
    if (!isText)
        return refuse(Kind::BadName, TransferText::notUtf8(entry.name));
    std::error_code error;
    const bool isLink = found.is_symlink(error);
    const fs::file_status status = found.status(error);
    if (status.type() == fs::file_type::not_found)
        return refuse(Kind::LocalFile,
                      isLink ? TransferText::brokenLink() : TransferText::notThere());
    if (status.type() == fs::file_type::directory && isLink)
        return refuse(Kind::LocalFile, TransferText::linkToFolder());
    entry.isFolder = status.type() == fs::file_type::directory;
    if (!entry.isFolder && status.type() != fs::file_type::regular) {
        return refuse(Kind::LocalFile,
                      error ? TransferText::notReadable() : TransferText::notPlain());
    }
    if (!local_names::isRemoteName(entry.name))
        return refuse(Kind::BadName, TransferText::badRemoteName(entry.name));
    if (!entry.isFolder) {
        entry.sizeBytes = qint64(found.file_size(error));
        if (error)
            return refuse(Kind::LocalFile, TransferText::notReadable());
    }
    return entry;
}

} // namespace

bool local_names::isRemoteName(const QString &name)
{
    const int bytes = name.toUtf8().size();
    return bytes > 0 && bytes <= MostNameBytes && !isPathStep(name)
        && !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\'))
        && !hasControlCharacter(name);
}

bool local_names::isLocalName(const QString &name)
{
#ifdef Q_OS_WIN
    return isWindowsName(name);
#else
    return !name.isEmpty() && !isPathStep(name) && !name.contains(QLatin1Char('/'))
        && !name.contains(QChar::Null) && QFile::encodeName(name).size() <= MostNameBytes;
#endif
}

bool local_names::isWindowsName(const QString &name)
{
    static const QString reserved = QStringLiteral("/\\:*?\"<>|");
    // NUL.txt is a device, too.
    static const QRegularExpression device(
        QStringLiteral("^(CON|PRN|AUX|NUL|(COM|LPT)[0-9\u00b9\u00b2\u00b3])\\s*(\\.|$)"),
        QRegularExpression::CaseInsensitiveOption);
    return !name.isEmpty() && name.size() <= MostNameBytes && !hasControlCharacter(name)
        && std::none_of(name.begin(), name.end(), [](QChar c) { return reserved.contains(c); })
        && !name.endsWith(QLatin1Char(' ')) && !name.endsWith(QLatin1Char('.'))
        && !device.match(name).hasMatch();
}

QString local_names::key(const QString &name)
{
#ifdef Q_OS_WIN
    return name.toCaseFolded();
#else
    return name;
#endif
}

QString local_names::numbered(const QString &name, int number)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    const int baseLength = dot > 0 ? dot : name.size();
    const QString end = QStringLiteral("(%1)").arg(number) + name.mid(baseLength);
    QString base = name.left(baseLength);
    while (!base.isEmpty() && (base + end).toUtf8().size() > MostNameBytes)
        base.chop(base.at(base.size() - 1).isLowSurrogate() ? 2 : 1);
    return base + end;
}

QString local_names::partPath(const TransferRecord &record)
{
    constexpr int Digits = 16;
    const QByteArray key =
        (record.documentId + record.contentId + QLatin1Char('/') + record.localName).toUtf8();
    const QByteArray digest = QCryptographicHash::hash(key, QCryptographicHash::Md5).toHex();
    return record.localFolder + QLatin1String("/.vell-") + QString::fromLatin1(digest.left(Digits))
        + QLatin1String(".part");
}

std::vector<FolderEntry> local_names::entriesOf(const QString &path, VellError *error)
{
    std::vector<FolderEntry> entries;
    std::error_code code;
    fs::directory_iterator found(fsPath(path), code);
    for (; !code && found != fs::directory_iterator(); found.increment(code))
        entries.push_back(entryOf(*found));
    if (code)
        *error = VellError::of(VellError::Kind::LocalFile, TransferText::notReadable(),
                               QString::fromStdString(code.message()));
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry &a, const FolderEntry &b) { return a.localName < b.localName; });
    return entries;
}

QString local_names::replace(const QString &from, const QString &to)
{
    std::error_code code;
    fs::rename(fsPath(from), fsPath(to), code);
    return code ? QString::fromStdString(code.message()) : QString();
}
