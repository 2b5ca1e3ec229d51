// The low-level functions are deprecated in favour of an interface that cannot save its state.
#define OPENSSL_SUPPRESS_DEPRECATED

#include <service/storage/Md5.h>

#include <QDataStream>
#include <QString>

#include <algorithm>
#include <openssl/md5.h>

namespace service {

struct Md5::Context
{
    MD5_CTX value;
};

Md5::Md5() : m_context(std::make_unique<Context>())
{
    MD5_Init(&m_context->value);
}

Md5::~Md5() = default;

bool Md5::restore(const QByteArray &state)
{
    QDataStream in(state);
    MD5_CTX &md5 = m_context->value;
    in >> md5.A >> md5.B >> md5.C >> md5.D >> md5.Nl >> md5.Nh >> md5.num;
    for (MD5_LONG &word : md5.data)
        in >> word;
    return in.status() == QDataStream::Ok && in.atEnd() && md5.num < MD5_CBLOCK;
}

void Md5::add(const char *data, qint64 length)
{
    MD5_Update(&m_context->value, data, static_cast<size_t>(length));
}

QByteArray Md5::state() const
{
    QByteArray state;
    QDataStream out(&state, QIODevice::WriteOnly);
    const MD5_CTX &md5 = m_context->value;
    out << md5.A << md5.B << md5.C << md5.D << md5.Nl << md5.Nh << md5.num;
    for (const MD5_LONG word : md5.data)
        out << word;
    return state;
}

QByteArray Md5::result()
{
    unsigned char digest[MD5_DIGEST_LENGTH];
    MD5_Final(digest, &m_context->value);
    return QByteArray(reinterpret_cast<const char *>(digest), MD5_DIGEST_LENGTH).toHex();
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
