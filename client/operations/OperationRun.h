#pragma once

#include <document_service/VellDocumentData.h>
#include <operations/ServiceScope.h>
#include <operations/VellError.h>

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

class VellOperation;

//! \brief Thrown by the work of an operation to end it.
struct OperationFailure
{
    VellError error;
};

//! \brief The working side of one operation, shared by both threads.
class OperationRun
{
public:
    OperationRun(const ServiceScope &scope, std::function<void(OperationRun &)> work,
                 VellOperation *receiver);

    //! \name For the thread of the work
    //! \{

    //! A facade with a cache of its own, which is empty at the start.
    VellDocumentData &documents() { return m_documents; }
    const QString &projectId() const { return m_scope.projectId; }
    //! \a path below the address of the service.
    QString address(const QString &path) const { return m_requests.settings().baseApi + path; }

    //! Returns what \a question returns. \throws OperationFailure if a request of it failed
    template <typename Question>
    auto ask(Question question)
    {
        m_requests.forgetFailure();
        auto answer = question();
        throwFailure();
        return answer;
    }

    //! Runs \a change, which returns whether it succeeded. \throws OperationFailure if it did not
    template <typename Change>
    void change(Change change)
    {
        m_requests.forgetFailure();
        const bool isDone = change();
        throwFailure();
        if (!isDone)
            throw OperationFailure{VellError::of(VellError::Kind::Unclear)};
    }

    //! \throws OperationFailure after abort()
    void checkAborted() const;
    //! \throws OperationFailure after abort(), or if the last request failed
    void throwFailure() const;
    void setProgress(qint64 done, qint64 total);

    //! Calls \a work for 0 to \a count - 1, several at once, each with a run of its thread, and returns when all have
    //! returned. \a work must not throw. abort() reaches them.
    void forEach(int count, const std::function<void(OperationRun &run, int index)> &work);

    //! Does the work in its scope and reports its end to the receiver.
    void execute();
    //! \}

    //! \name For the thread of the operation
    //! \{
    void abort();
    bool hasStarted() const { return m_hasStarted; }
    //! Nothing is reported from now on.
    void detach();
    //! \}

private:
    void report(std::function<void(VellOperation *)> call);
    void runScoped(const std::function<void()> &work);

    const ServiceScope m_scope;
    RequestContext m_requests;
    const std::function<void(OperationRun &)> m_work;
    VellDocumentData m_documents;
    std::atomic<bool> m_hasStarted{false};
    std::mutex m_mutex;
    VellOperation *m_receiver;
    std::vector<OperationRun *> m_parts; // of forEach()
};
