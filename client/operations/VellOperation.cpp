#include <operations/VellOperation.h>

#include <operations/OperationRun.h>

#include <QPointer>

VellOperation::VellOperation(QObject *parent) : QObject(parent) {}

VellOperation::~VellOperation()
{
    if (!m_run)
        return;
    m_run->detach();
    m_run->abort();
}

void VellOperation::setWork(std::function<void(OperationRun &)> work)
{
    m_work = std::move(work);
}

void VellOperation::abort()
{
    if (m_isEnded || !m_run)
        return;
    m_run->abort();
    if (m_run->hasStarted())
        return; // ends when its requests have been aborted
    QMetaObject::invokeMethod(
        this, [this] { end(VellError::cancelled()); }, Qt::QueuedConnection);
}

void VellOperation::end(const VellError &error)
{
    if (m_isEnded)
        return;
    m_isEnded = true;
    m_error = error;
    const QPointer<VellOperation> self(this);
    if (error) {
        reject();
        Q_EMIT failed(error);
    } else {
        succeed();
        if (self)
            Q_EMIT finished();
    }
    if (self)
        deleteLater();
}
