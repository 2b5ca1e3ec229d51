#pragma once

#include <operations/OperationLanes.h>
#include <session/VellSession.h>

#include <utility>

//! \brief What the other folders of this library need of a session, and nobody else.
class SessionAccess
{
public:
    //! The connection, the project and the user as they are now.
    static ServiceScope scope(const VellSession *session) { return session->scope(); }

    //! Makes an operation with \a work and starts it.
    //! \param apply called with the result on the thread of the session, before finished() is emitted, unless another
    //!        project has been opened meanwhile
    template <typename Result>
    static VellResult<Result> *start(VellSession *session, OperationLanes::Lane lane,
                                     std::function<Result(OperationRun &)> work,
                                     std::function<void(const Result &)> apply = {})
    {
        auto *const operation = new VellResult<Result>(session, std::move(work));
        if (apply) {
            operation->setApply([session, project = session->projectId(),
                                 apply = std::move(apply)](const Result &result) {
                if (session->projectId() == project)
                    apply(result);
            });
        }
        session->start(operation, int(lane));
        return operation;
    }

    //! Tells the session how a request of a transfer ended, so that it learns whether the service can be reached.
    static void noteOutcome(VellSession *session, const VellError &error)
    {
        session->noteOutcome(error);
    }
};
