// The low-level functions are deprecated, but the functions that replace them cannot save their state.
#define OPENSSL_SUPPRESS_DEPRECATED

#include <service/storage/ContentHash.h>

#include <QDataStream>

#include <algorithm>
#include <array>
#include <openssl/md5.h>
#include <openssl/sha.h>

namespace service {

namespace {

template <typename Hash>
void writeState(QDataStream &out, const Hash &hash)
{
    out << hash.Nl << hash.Nh << hash.num;
    for (const auto word : hash.data)
        out << word;
}

template <typename Hash>
void readState(QDataStream &in, Hash &hash)
{
    in >> hash.Nl >> hash.Nh >> hash.num;
    for (auto &word : hash.data)
        in >> word;
}

template <size_t Size>
QString hex(const std::array<unsigned char, Size> &digest)
{
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(digest.data()), static_cast<int>(Size)).toHex());
}

} // namespace

struct ContentHash::Context
{
    MD5_CTX md5 = {};
    SHA256_CTX sha256 = {};
    bool hasSha256 = true;
    qint64 size = 0;
};

ContentHash::ContentHash() : m_context(std::make_unique<Context>())
{
    MD5_Init(&m_context->md5);
    SHA256_Init(&m_context->sha256);
}

ContentHash::~ContentHash() = default;
ContentHash::ContentHash(ContentHash &&other) noexcept = default;
ContentHash &ContentHash::operator=(ContentHash &&other) noexcept = default;

bool ContentHash::restore(const QByteArray &state)
{
    QDataStream in(state);
    MD5_CTX &md5 = m_context->md5;
    in >> md5.A >> md5.B >> md5.C >> md5.D;
    readState(in, md5);
    m_context->size = static_cast<qint64>(((quint64(md5.Nh) << 32) | md5.Nl) / 8);
    m_context->hasSha256 = !in.atEnd();
    if (m_context->hasSha256) {
        SHA256_CTX &sha256 = m_context->sha256;
        for (auto &word : sha256.h)
            in >> word;
        readState(in, sha256);
    }
    return in.status() == QDataStream::Ok && in.atEnd() && md5.num < MD5_CBLOCK
        && m_context->sha256.num < SHA256_CBLOCK;
}

void ContentHash::add(const char *data, qint64 length)
{
    MD5_Update(&m_context->md5, data, static_cast<size_t>(length));
    if (m_context->hasSha256)
        SHA256_Update(&m_context->sha256, data, static_cast<size_t>(length));
    m_context->size += length;
}

QByteArray ContentHash::state() const
{
    QByteArray state;
    QDataStream out(&state, QIODevice::WriteOnly);
    const MD5_CTX &md5 = m_context->md5;
    out << md5.A << md5.B << md5.C << md5.D;
    writeState(out, md5);
    if (!m_context->hasSha256)
        return state;
    for (const auto word : m_context->sha256.h)
        out << word;
    writeState(out, m_context->sha256);
    return state;
}

ContentDigest ContentHash::result()
{
    std::array<unsigned char, MD5_DIGEST_LENGTH> md5{};
    MD5_Final(md5.data(), &m_context->md5);
    ContentDigest digest{hex(md5), QString(), m_context->size};
    if (m_context->hasSha256) {
        std::array<unsigned char, SHA256_DIGEST_LENGTH> sha256{};
        SHA256_Final(sha256.data(), &m_context->sha256);
        digest.sha256 = hex(sha256);
    }
    return digest;
}

bool isMd5(const QString &text)
{
    return text.size() == 2 * MD5_DIGEST_LENGTH
        && std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
                   || (c >= QLatin1Char('a') && c <= QLatin1Char('f'));
           });
}

} // namespace service
