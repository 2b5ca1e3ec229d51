#pragma once

#include <operations/OperationLanes.h>
#include <session/VellSession.h>

#include <utility>

//! \brief Gives the other folders of this library access to private functions of a session.
class SessionAccess
{
public:
    //! Returns the present connection, project and user.
    static ServiceScope scope(const VellSession *session) { return session->scope(); }

    //! Creates an operation with \a work and starts it.
    //! \param apply called with the result on the thread of the session, before finished() is emitted, unless another
    //!        project has been opened meanwhile; may change the result
    template <typename Result>
    static VellResult<Result> *start(VellSession *session, OperationLanes::Lane lane,
                                     std::function<Result(OperationRun &)> work,
                                     std::function<void(Result &)> apply = {})
    {
        auto *const operation = new VellResult<Result>(session, std::move(work));
        if (apply) {
            operation->setApply([session, project = session->projectId(),
                                 apply = std::move(apply)](Result &result) {
                if (session->projectId() == project)
                    apply(result);
            });
        }
        session->start(operation, int(lane));
        return operation;
    }

    //! Reports the outcome of a request of a transfer to the session, for its state.
    static void noteOutcome(VellSession *session, const VellError &error)
    {
        session->noteOutcome(error);
    }
};
