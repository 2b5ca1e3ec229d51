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

//! \brief The part of an operation that runs on another thread, shared by both threads.
class OperationRun
{
public:
    OperationRun(const ServiceScope &scope, std::function<void(OperationRun &)> work,
                 VellOperation *receiver);

    //! \name For the thread of the work
    //! \{

    //! Returns a facade with its own cache, which is empty at first.
    VellDocumentData &documents() { return m_documents; }
    const QString &projectId() const { return m_scope.projectId; }
    //! Returns the address of \a path on the service.
    QString address(const QString &path) const { return m_requests.settings().baseApi + path; }

    //! Calls \a function and returns its result. \throws OperationFailure if one of its requests has failed
    template <typename Query>
    auto query(Query function)
    {
        m_requests.forgetFailure();
        auto result = function();
        throwFailure();
        return result;
    }

    //! Calls \a change, which returns true on success. \throws OperationFailure otherwise
    template <typename Change>
    void change(Change change)
    {
        m_requests.forgetFailure();
        const bool isDone = change();
        throwFailure();
        if (!isDone)
            throw OperationFailure{VellError::of(VellError::Kind::Unclear)};
    }

    //! Sends a DELETE to \a path of the service, for resources that the library has no function for. \throws OperationFailure
    void deleteResource(const QString &path);

    //! \throws OperationFailure after abort()
    void checkAborted() const;
    //! \throws OperationFailure after abort(), or if the last request failed
    void throwFailure() const;
    void setProgress(qint64 done, qint64 total);

    //! Calls \a work for 0 to \a count - 1 on several threads, each with its own run, and returns when all calls have returned.
    //! \a work must not throw. abort() aborts all of them.
    void forEach(int count, const std::function<void(OperationRun &run, int index)> &work);

    //! Runs the work in its scope and reports its end to the receiver.
    void execute();
    //! \}

    //! \name For the thread of the operation
    //! \{
    void abort();
    bool hasStarted() const { return m_hasStarted; }
    //! Reports nothing from now on.
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
