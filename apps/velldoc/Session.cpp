#include <velldoc/Session.h>

#include <velldoc/Text.h>
#include <velldoc/output/Interrupt.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

namespace velldoc {

namespace {

constexpr int Unauthorized = 401;
constexpr int Forbidden = 403;
constexpr int NotFound = 404;
constexpr int ServerError = 500;
constexpr int NoRoom = 507;

bool hasNoAnswer(const NetworkFailure &failure)
{
    // A 2xx that failed all the same broke off on the way.
    return failure.httpStatus == 0 || failure.httpStatus / 100 == 2;
}

QString sentenceOf(QString text)
{
    if (!text.isEmpty() && !text.endsWith(QLatin1Char('.')) && !text.endsWith(QChar(0x3002)))
        text += QLatin1Char('.');
    return text;
}

} // namespace

Session::Session(const Settings &settings) : m_settings(settings)
{
    QObject::connect(NetworkManager::instance(), &NetworkManager::requestFailed, &m_receiver,
                     [this](const NetworkFailure &failure) { m_lastFailure = failure; });
}

void Session::open()
{
    const QString url =
        m_settings.url.isEmpty() ? m_embedded.start(m_settings.dataDir) : m_settings.url;
    VellBaseApi::GetInstance().setBaseApi(url);
    NetworkSettings::instance().setAccessToken(m_settings.token);
    GetSoftCache()->setCurrentProjectId(m_settings.project);
    readUser();
    GetSoftCache()->setCurrentUserId(userId());
}

QString Session::baseApi() const
{
    return VellBaseApi::GetInstance().getBaseApi();
}

QString Session::userId() const
{
    return m_user.value(QLatin1String("_id")).toString();
}

QString Session::userName() const
{
    return m_user.value(QLatin1String("name")).toString();
}

QString Session::userText(const QString &id) const
{
    return id == userId() && !userName().isEmpty() ? userName() : id;
}

QString Session::userIdOf(const QString &text) const
{
    return text == userName() && !userId().isEmpty() ? userId() : text;
}

void Session::readUser()
{
    forgetFailure();
    NetworkEventLoop loop(
        NetworkManager::instance()->get(baseApi() + QLatin1String("base-service/me")));
    loop.exec();
    Interrupt::check();
    m_user = loop.object();
    // A service that does not say who asks may do everything else.
    if (loop.httpStatus() == NotFound && !m_user.isEmpty())
        return;
    if (loop.httpStatus() == NotFound || (loop.isSuccessful() && userId().isEmpty())) {
        throw Failure(ExitNoConnection,
                      Text::tr("What answers at %1 is no document service: check the address.")
                          .arg(baseApi()));
    }
    throwFailure();
}

QJsonObject Session::getObject(const QString &path)
{
    return ask([&] {
        NetworkEventLoop loop(NetworkManager::instance()->get(baseApi() + path));
        loop.exec();
        return loop.object();
    });
}

Failure Session::describe(const NetworkFailure &failure) const
{
    const QString message = sentenceOf(failure.message);
    if (hasNoAnswer(failure)) {
        const QString sentence =
            Text::tr(
                "The service at %1 cannot be reached: check the address and the network, then try "
                "again. (%2)")
                .arg(baseApi(), failure.message);
        return {ExitNoConnection, sentence};
    }
    switch (failure.httpStatus) {
    case Unauthorized:
        return {ExitNotAllowed,
                message + QLatin1Char(' ') + Text::tr("Run \"velldoc login\" or pass --token."),
                failure.httpStatus};
    case Forbidden:
        return {ExitNotAllowed,
                message + QLatin1Char(' ') + Text::tr("Ask an owner of the project for the right."),
                failure.httpStatus};
    case NotFound:
        return {ExitNotFound,
                message + QLatin1Char(' ')
                    + Text::tr("It may have been deleted; \"velldoc find NAME\" looks for it."),
                failure.httpStatus};
    case NoRoom:
        return {ExitFailed,
                message + QLatin1Char(' ')
                    + Text::tr("Make room there, then run the same command again."),
                failure.httpStatus};
    default:
        return {ExitFailed,
                failure.httpStatus >= ServerError
                    ? message + QLatin1Char(' ') + Text::tr("Try again later.")
                    : message,
                failure.httpStatus};
    }
}

void Session::throwFailure()
{
    Interrupt::check();
    if (m_lastFailure)
        throw describe(*m_lastFailure);
}

void Session::throwRefusal()
{
    throwFailure();
    throw Failure(ExitFailed, Text::tr("The service did not do it and did not say why."));
}

} // namespace velldoc
