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

//! \param text with or without a full stop, as services write it
//! \param advice what the user can do about it, if anything
Failure failureOf(ExitCode code, QString text, const QString &advice, int httpStatus)
{
    if (text.endsWith(QLatin1Char('.')) || text.endsWith(QChar(0x3002)))
        text.chop(1);
    const QString cause = Text::tr("%1.").arg(text);
    if (advice.isEmpty())
        return {code, cause, httpStatus};
    return {code, Text::tr("%1: %2").arg(text, advice), httpStatus, cause};
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
    if (hasNoAnswer(failure)) {
        return failureOf(
            ExitNoConnection,
            Text::tr("The service at %1 cannot be reached (%2)").arg(baseApi(), failure.message),
            Text::tr("check the address and the network, then try again."), 0);
    }
    ExitCode code = ExitFailed;
    QString advice;
    switch (failure.httpStatus) {
    case Unauthorized:
        code = ExitNotAllowed;
        advice = Text::tr("run \"velldoc login\" or pass --token.");
        break;
    case Forbidden:
        code = ExitNotAllowed;
        advice = Text::tr("ask an owner of the project for the right.");
        break;
    case NotFound:
        code = ExitNotFound;
        advice = Text::tr("it may have been deleted; \"velldoc find NAME\" looks for it.");
        break;
    case NoRoom:
        advice = Text::tr("make room there, then run the same command again.");
        break;
    default:
        if (failure.httpStatus >= ServerError)
            advice = Text::tr("try again later.");
    }
    return failureOf(code, failure.message, advice, failure.httpStatus);
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
