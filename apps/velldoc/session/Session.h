#pragma once

#include <velldoc/program/Failure.h>
#include <velldoc/session/EmbeddedService.h>
#include <velldoc/session/Settings.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>

#include <QEventLoop>

namespace velldoc {

//! \brief The connection of a command to the service.
class Session
{
public:
    explicit Session(const Settings &settings);
    Q_DISABLE_COPY(Session)

    //! Starts the embedded service if no other is set, and checks that the address is that of a document
    //! service that accepts the user.
    //! \throws Failure
    void open();

    const Settings &settings() const { return m_settings; }
    QString baseApi() const;
    VellDocuments &documents() { return m_documents; }
    //! Returns true if the service runs inside this process.
    bool isEmbedded() const { return m_embedded.isRunning(); }
    //! Returns the signed-in user with the projects.
    const VellUser &user() const { return m_session.user(); }
    QString userId() const; //!< empty if the service does not report it

    //! Returns the name of the user \a id, or the identifier if the service does not report the name.
    QString userText(const QString &id);
    //! Returns the identifiers of the users with the name \a text; \a text itself if there are none.
    QStringList userIdsOf(const QString &text);

    //! Waits for \a operation and returns its result.
    //! \throws Failure if it failed, or after Ctrl-C
    template <typename Result>
    Result await(VellResult<Result> *operation)
    {
        VellError error;
        Result result = await(operation, &error);
        if (error)
            throw describe(error);
        return result;
    }

    //! Like await(), but sets \a error if the operation has failed. \throws Failure after Ctrl-C
    template <typename Result>
    Result await(VellResult<Result> *operation, VellError *error)
    {
        Result result{};
        QEventLoop loop;
        operation->then(
            &loop,
            [&](const Result &answer) {
                result = answer;
                loop.quit();
            },
            [&](const VellError &reason) {
                *error = reason;
                loop.quit();
            });
        wait(loop);
        return result;
    }

    //! Waits for an operation on many documents. \throws Failure if one of them failed, or after Ctrl-C
    VellBulkResult awaitAll(VellResult<VellBulkResult> *operation);

    //! Returns the sentence and the exit code for \a error.
    Failure describe(const VellError &error) const;

private:
    void wait(QEventLoop &loop);
    void loadNames();
    QString missingAdvice() const;

    const Settings m_settings;
    QString m_address; // as the user has written it
    EmbeddedService m_embedded;
    VellSession m_session;
    VellDocuments m_documents;
    bool m_hasNames = false;
};

} // namespace velldoc
