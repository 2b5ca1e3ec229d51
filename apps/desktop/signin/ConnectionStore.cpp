#include <desktop/signin/ConnectionStore.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QUuid>

#include <algorithm>
#include <array>
#include <utility>

namespace desktop {

namespace {

struct Field
{
    const char *key;
    QString SavedConnection::*member;
};

constexpr std::array<Field, 8> Fields{{
    {"id", &SavedConnection::id},
    {"address", &SavedConnection::address},
    {"token", &SavedConnection::token},
    {"project", &SavedConnection::projectId},
    {"projectName", &SavedConnection::projectName},
    {"user", &SavedConnection::userName},
    {"authority", &SavedConnection::caCertificates},
    {"proxy", &SavedConnection::proxy},
}};

QJsonObject read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

SavedConnection fromJson(const QJsonObject &json)
{
    SavedConnection connection;
    for (const Field &field : Fields)
        connection.*field.member = json.value(QLatin1String(field.key)).toString();
    connection.isOwn = json.value(QLatin1String("own")).toBool();
    connection.isTokenInVault = json.value(QLatin1String("tokenInKeyring")).toBool();
    return connection;
}

QJsonObject toJson(const SavedConnection &connection)
{
    QJsonObject json{{QStringLiteral("own"), connection.isOwn},
                     {QStringLiteral("tokenInKeyring"), connection.isTokenInVault}};
    for (const Field &field : Fields) {
        if (!(connection.*field.member).isEmpty())
            json.insert(QLatin1String(field.key), connection.*field.member);
    }
    return json;
}

bool isSame(const SavedConnection &a, const SavedConnection &b)
{
    if (a.isOwn || b.isOwn)
        return a.isOwn && b.isOwn;
    if (!a.id.isEmpty() && a.id == b.id)
        return true;
    return a.address == b.address && a.projectId == b.projectId && a.userName == b.userName;
}

} // namespace

ConnectionStore::ConnectionStore(const QString &path, std::unique_ptr<TokenVault> vault)
    : m_path(path), m_vault(std::move(vault))
{}

ConnectionStore::~ConnectionStore() = default;

QList<SavedConnection> ConnectionStore::connections() const
{
    QList<SavedConnection> connections;
    const QJsonArray array = read(m_path).value(QLatin1String("connections")).toArray();
    for (const QJsonValue &value : array)
        connections.append(fromJson(value.toObject()));
    return connections;
}

std::optional<SavedConnection> ConnectionStore::last() const
{
    const QString id = read(m_path).value(QLatin1String("last")).toString();
    const QList<SavedConnection> all = connections();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&id](const SavedConnection &c) { return c.id == id; });
    return found == all.end() ? std::nullopt : std::make_optional(*found);
}

void ConnectionStore::withToken(const SavedConnection &connection,
                                const std::function<void(const SavedConnection &)> &use)
{
    if (!m_vault || !connection.isTokenInVault) {
        use(connection);
        return;
    }
    m_vault->read(connection.id, [this, connection, use](const QString &token) {
        SavedConnection whole = connection;
        whole.token = token;
        m_vaultTokens.insert(whole.id, token);
        use(whole);
    });
}

QString ConnectionStore::save(SavedConnection connection)
{
    const QString token = connection.token;
    connection.isTokenInVault = !token.isEmpty() && m_vaultTokens.value(connection.id) == token;
    if (connection.isTokenInVault)
        connection.token.clear();
    QList<SavedConnection> all = connections();
    const auto found = std::find_if(all.begin(), all.end(), [&](const SavedConnection &other) {
        return isSame(other, connection);
    });
    if (found == all.end()) {
        connection.id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        all.append(connection);
    } else {
        connection.id = found->id;
        *found = connection;
    }
    if (!write(all, connection.id))
        return {};
    // The file contains it until the vault has stored it, so that it is not lost.
    if (m_vault && !connection.token.isEmpty()) {
        m_vault->write(connection.id, token, [this, id = connection.id, token](bool isKept) {
            if (isKept)
                leaveToken(id, token);
        });
    }
    return connection.id;
}

//! Removes the \a token, which is now in the vault, from the file.
void ConnectionStore::leaveToken(const QString &id, const QString &token)
{
    QList<SavedConnection> all = connections();
    for (SavedConnection &connection : all) {
        if (connection.id != id || connection.token != token)
            continue;
        connection.token.clear();
        connection.isTokenInVault = true;
        m_vaultTokens.insert(id, token);
    }
    write(all, read(m_path).value(QLatin1String("last")).toString());
}

bool ConnectionStore::remove(const QString &id)
{
    QList<SavedConnection> all = connections();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&id](const SavedConnection &c) { return c.id == id; }),
              all.end());
    if (m_vault)
        m_vault->remove(id);
    const QString lastId = read(m_path).value(QLatin1String("last")).toString();
    return write(all, lastId == id ? QString() : lastId);
}

bool ConnectionStore::write(const QList<SavedConnection> &connections, const QString &lastId) const
{
    QJsonArray array;
    for (const SavedConnection &connection : connections)
        array.append(toJson(connection));
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    // Made private before the tokens are written.
    if (!file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return false;
    file.write(QJsonDocument(QJsonObject{{QStringLiteral("connections"), array},
                                         {QStringLiteral("last"), lastId}})
                   .toJson());
    return file.commit();
}

QString ConnectionStore::saveAuthority(const QByteArray &pem, const QString &fingerprint) const
{
    QString name = fingerprint;
    name.remove(QLatin1Char(':'));
    const QDir folder(QFileInfo(m_path).path() + QStringLiteral("/authorities"));
    folder.mkpath(QStringLiteral("."));
    QSaveFile file(folder.filePath(name + QStringLiteral(".pem")));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(pem);
    return file.commit() ? file.fileName() : QString();
}

} // namespace desktop
