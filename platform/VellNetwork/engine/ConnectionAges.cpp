#include "ConnectionAges.h"

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

// Half of the shortest time-out that is common on servers.
constexpr milliseconds SafeIdleTime{500};
// The time that a server which announces its time-out may need to receive a request.
constexpr seconds Margin{1};

milliseconds safeIdleTime(const QByteArray &keepAlive)
{
    if (keepAlive.isEmpty())
        return SafeIdleTime;
    const QList<QByteArray> parameters = keepAlive.toLower().split(',');
    for (const QByteArray &parameter : parameters) {
        const QByteArray text = parameter.trimmed();
        if (text.startsWith("timeout=")) {
            const seconds announced(text.mid(8).toInt());
            return announced > Margin ? announced - Margin : SafeIdleTime;
        }
    }
    return SafeIdleTime;
}

} // namespace

void ConnectionAges::setUsed(int localPort, const QByteArray &keepAlive)
{
    m_safeUntil.insert(localPort, Clock::now() + safeIdleTime(keepAlive));
}

bool ConnectionAges::isSafe(int localPort) const
{
    const auto found = m_safeUntil.constFind(localPort);
    return found == m_safeUntil.constEnd() || Clock::now() < *found;
}
