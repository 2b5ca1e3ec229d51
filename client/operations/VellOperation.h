#pragma once

#include <operations/VellError.h>
#include <vellclient_export.h>

#include <QFuture>
#include <QFutureInterface>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <utility>

class OperationRun;

//! \brief An operation that runs in the background.
//!
//! Emits either finished() or failed(), exactly once and never before the function that created it has returned, and then deletes
//! itself. If it is deleted earlier, it is aborted, and nothing is emitted. Belongs to the thread of its session.
//!
//! \since 0.1
//! \sa VellResult, VellDocuments
class VELLCLIENT_EXPORT VellOperation : public QObject
{
    Q_OBJECT

public:
    ~VellOperation() override;

    //! Aborts the operation and its requests in flight. failed() follows from the event loop, with VellError::Kind::Cancelled. The
    //! service may have made a change nevertheless. Has no effect after the end.
    void abort();

    //! Returns true if finished() or failed() has been or is being emitted.
    bool isEnded() const { return m_isEnded; }

    //! Returns the error of failed(); no error before the end and after success.
    const VellError &error() const { return m_error; }

Q_SIGNALS:
    //! The operation has succeeded; VellResult::result() is available.
    void finished();

    //! The operation has failed or was aborted.
    void failed(const VellError &error);

    //! Emitted by operations on many documents and for lists in pages. \a done of \a total parts are complete.
    void progressed(qint64 done, qint64 total);

protected:
    explicit VellOperation(QObject *parent);

    //! \param work runs on another thread
    void setWork(std::function<void(OperationRun &)> work);

private:
    friend class OperationLanes;
    friend class OperationRun;

    virtual void succeed() = 0; // called before finished()
    virtual void reject() = 0; // called before failed()
    void end(const VellError &error);

    std::shared_ptr<OperationRun> m_run;
    std::function<void(OperationRun &)> m_work;
    VellError m_error;
    bool m_isEnded = false;
};

//! \brief An operation with a result.
//!
//! \code
//! documents.list(condition)->then(this, [this](const QList<VellDocument> &list) { show(list); },
//!                                            [this](const VellError &error) { showError(error.text); });
//! \endcode
//!
//! \since 0.1
template <typename Result>
class VellResult : public VellOperation
{
public:
    //! Returns the result; default-constructed before finished() and after a failure.
    const Result &result() const { return *m_result; }

    //! Returns the result as a future. If the operation fails, the future is cancelled and has no result. Cancelling the future
    //! does not abort the operation.
    QFuture<Result> future() { return m_future.future(); }

    //! Calls \a onFinished with the result, or \a onFailed with the error, unless \a context has been deleted before.
    //! \return this operation
    VellResult *then(QObject *context, std::function<void(const Result &)> onFinished,
                     std::function<void(const VellError &)> onFailed = {})
    {
        connect(this, &VellOperation::finished, context,
                [this, call = std::move(onFinished)] { call(result()); });
        if (onFailed)
            connect(this, &VellOperation::failed, context, std::move(onFailed));
        return this;
    }

    //! For VellDocuments and VellSession.
    //! \param work runs on another thread
    VellResult(QObject *parent, std::function<Result(OperationRun &)> work)
        : VellOperation(parent), m_result(std::make_shared<Result>())
    {
        m_future.reportStarted();
        setWork([result = m_result, work = std::move(work)](OperationRun &run) {
            *result = work(run);
        });
    }

    ~VellResult() override
    {
        if (!m_future.isFinished())
            reject();
    }

    //! Sets a function that is called with the result, on this thread, before finished() is emitted. It may change the result.
    void setApply(std::function<void(Result &)> apply) { m_apply = std::move(apply); }

private:
    void succeed() override
    {
        // A slot that is called by m_apply may delete this operation.
        const QPointer<VellOperation> self(this);
        if (m_apply)
            m_apply(*m_result);
        if (!self)
            return;
        m_future.reportResult(*m_result);
        m_future.reportFinished();
    }

    void reject() override
    {
        m_future.reportCanceled();
        m_future.reportFinished();
    }

    const std::shared_ptr<Result> m_result; // written by the work, read here after its end
    std::function<void(Result &)> m_apply;
    QFutureInterface<Result> m_future;
};
