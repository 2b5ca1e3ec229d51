#include "ConnectionAges.h"

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

// Half of the shortest time-out that servers are configured with.
constexpr milliseconds SafeIdleTime{500};
// What a server that announces its time-out may need to notice a request.
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
