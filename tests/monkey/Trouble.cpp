#include "Trouble.h"

namespace {

constexpr int LongestAwayMs = 2500;
constexpr int LongestRefusalMs = 4000;

const QStringList &faults()
{
    static const QStringList list{
        QStringLiteral("lose-reply,verb=POST,nth=2,times=2"),
        QStringLiteral("lose-reply,verb=PUT,times=3"),
        QStringLiteral("lose-reply,verb=DELETE,times=2"),
        QStringLiteral("drop-after=20000,verb=POST,path=/base-service,times=3"),
        QStringLiteral("status=503,verb=GET,nth=3,times=6"),
        QStringLiteral("status=500,verb=GET,nth=2,times=3"),
        QStringLiteral("status=503,verb=POST,times=3"),
        QStringLiteral("stall=3000,verb=GET,nth=2,times=4"),
        QStringLiteral("cut-reply=5,verb=GET,path=/document-service,times=3"),
        QStringLiteral("cut-reply=1000,verb=GET,path=/base-service/files,times=2"),
        QStringLiteral("forget-chunk,verb=POST,path=/base-service/largefiles,nth=2,times=2"),
        QStringLiteral("no-room,verb=POST,times=6"),
        QStringLiteral("slow=700,times=20"),
    };
    return list;
}

} // namespace

Trouble::Trouble(MonkeyWorld *world) : m_world(world)
{
    for (QTimer *const timer : {&m_startingService, &m_givingRight})
        timer->setSingleShot(true);
    QObject::connect(&m_startingService, &QTimer::timeout,
                     [this] { m_world->startService(m_arguments); });
    QObject::connect(&m_givingRight, &QTimer::timeout,
                     [this] { m_world->setRole(QStringLiteral("owner")); });
}

QString Trouble::make(Dice *dice)
{
    switch (dice->roll(4)) {
    case 0:
        return killService(dice);
    case 1:
        return takeRight(dice);
    default:
        return cutNetwork(dice);
    }
}

QString Trouble::killService(Dice *dice)
{
    if (m_startingService.isActive())
        return QStringLiteral("the service is away");
    m_world->service.kill();
    m_arguments.clear();
    for (int i = dice->roll(3); i > 0; --i)
        m_arguments += {QStringLiteral("--fault"), dice->pick(faults())};
    if (dice->chance(10))
        m_arguments += {QStringLiteral("--quota"), QStringLiteral("200000")};
    const int awayMs = dice->roll(LongestAwayMs);
    m_startingService.start(awayMs);
    return QStringLiteral("service killed, for %1 ms, then %2")
        .arg(awayMs)
        .arg(m_arguments.join(QLatin1Char(' ')));
}

QString Trouble::cutNetwork(Dice *dice) const
{
    using Kind = ProxyFault::Kind;
    using Point = ProxyFault::Point;
    ProxyFault fault;
    fault.kind = Kind(dice->roll(int(Kind::HalfAnswer) + 1));
    fault.point = fault.kind == Kind::HalfAnswer ? Point::BeforeAnswer
                                                 : Point(dice->roll(int(Point::MidAnswer) + 1));
    fault.delayMs = dice->roll(LongestAwayMs);
    m_world->proxy->strikeTarget("/", fault);
    return QStringLiteral("network fault %1 at %2").arg(int(fault.kind)).arg(int(fault.point));
}

QString Trouble::takeRight(Dice *dice)
{
    const QString role = dice->pick(QStringList{
        QStringLiteral("viewer"), QStringLiteral("contributor"), QStringLiteral("none")});
    m_world->setRole(role);
    m_givingRight.start(dice->roll(LongestRefusalMs));
    return QStringLiteral("role ") + role;
}

void Trouble::end()
{
    m_startingService.stop();
    m_givingRight.stop();
    m_world->service.kill();
    m_world->startService({});
    m_world->setRole(QStringLiteral("owner"));
}
