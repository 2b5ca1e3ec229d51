#pragma once

#include <velldoc/Failure.h>
#include <velldoc/Settings.h>
#include <velldoc/service/EmbeddedService.h>

#include <VellNetwork/NetworkFailure.h>

#include <QJsonObject>
#include <QObject>

#include <optional>
#include <type_traits>

namespace velldoc {

//! \brief The connection that a command works on, and why its last request failed.
//!
//! The library answers a failed request with "nothing". ask() and change() tell the two apart, so that no
//! failure is shown as an empty folder.
class Session
{
public:
    explicit Session(const Settings &settings);
    Q_DISABLE_COPY(Session)

    //! Starts the embedded service when no other is named, and makes sure that what answers is a document
    //! service that lets this user in.
    //! \throws Failure
    void open();

    const Settings &settings() const { return m_settings; }
    QString baseApi() const;
    //! Whether what answers ends with this process.
    bool isEmbedded() const { return m_embedded.isRunning(); }
    QString userId() const; //!< empty when the service does not tell

    //! The name of the user \a id. The service tells only that of the user who asks; of others it is the identifier.
    QString userText(const QString &id) const;
    //! The identifier of the user called \a text, or \a text itself.
    QString userIdOf(const QString &text) const;

    //! Runs \a question. \return what it returns
    //! \throws Failure when a request of it failed, or after Ctrl-C
    template <typename Question>
    auto ask(Question question)
    {
        forgetFailure();
        if constexpr (std::is_void_v<std::invoke_result_t<Question>>) {
            question();
            throwFailure();
        } else {
            auto answer = question();
            throwFailure();
            return answer;
        }
    }

    //! Runs \a change, which says whether it succeeded. \throws Failure when it did not, or after Ctrl-C
    template <typename Change>
    void change(Change change)
    {
        forgetFailure();
        if (!change())
            throwRefusal();
    }

    //! The object that GET \a path, below the base address, answers. \throws Failure
    QJsonObject getObject(const QString &path);

    //! Why the last request that failed did so; reset by forgetFailure().
    std::optional<NetworkFailure> lastFailure() const { return m_lastFailure; }
    void forgetFailure() { m_lastFailure.reset(); }

    //! The sentence and the exit code for \a failure.
    Failure describe(const NetworkFailure &failure) const;

private:
    void throwFailure();
    [[noreturn]] void throwRefusal();
    void readUser();
    QString userName() const;

    const Settings m_settings;
    EmbeddedService m_embedded;
    QObject m_receiver;
    QJsonObject m_user;
    std::optional<NetworkFailure> m_lastFailure;
};

} // namespace velldoc
