#pragma once

#include <velldoc/Failure.h>
#include <velldoc/Settings.h>
#include <velldoc/service/EmbeddedService.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>

#include <QEventLoop>

namespace velldoc {

//! \brief The connection that a command works on.
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
    VellDocuments &documents() { return m_documents; }
    //! Whether what answers ends with this process.
    bool isEmbedded() const { return m_embedded.isRunning(); }
    //! The signed-in user with the projects.
    const VellUser &user() const { return m_session.user(); }
    QString userId() const; //!< empty when the service does not tell

    //! The name of the user \a id, or the identifier if the service does not tell it.
    QString userText(const QString &id);
    //! The identifiers of the users called \a text; \a text itself if nobody is.
    QStringList userIdsOf(const QString &text);

    //! Waits for \a operation. \return its result
    //! \throws Failure when it failed, or after Ctrl-C
    template <typename Result>
    Result await(VellResult<Result> *operation)
    {
        VellError error;
        Result result = await(operation, &error);
        if (error)
            throw describe(error);
        return result;
    }

    //! The same, with the reason of a failure in \a error. \throws Failure after Ctrl-C
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

    //! Waits for \a operation on many documents. \throws Failure when one of them failed, or after Ctrl-C
    VellBulkResult awaitAll(VellResult<VellBulkResult> *operation);

    //! The sentence and the exit code for \a error.
    Failure describe(const VellError &error) const;

private:
    void wait(QEventLoop &loop);
    void loadNames();
    QString missingAdvice() const;

    const Settings m_settings;
    QString m_address; // as it was given
    EmbeddedService m_embedded;
    VellSession m_session;
    VellDocuments m_documents;
    bool m_hasNames = false;
};

} // namespace velldoc
