#include <desktop/transfers/ConflictDesk.h>

#include <desktop/transfers/ConflictDialog.h>

#include <file_types/SameNamePrompt.h>

#include <QMessageBox>

#include <algorithm>

namespace desktop {

namespace {

constexpr int GatherMs = 300;

} // namespace

ConflictDesk::ConflictDesk(VellTransferQueue *queue, VellSession *session, QWidget *window)
    : QObject(window), m_queue(queue), m_session(session), m_window(window)
{
    m_gather.setSingleShot(true);
    m_gather.setInterval(GatherMs);
    connect(&m_gather, &QTimer::timeout, this, &ConflictDesk::showList);
    connect(queue, &VellTransferQueue::asked, this, &ConflictDesk::take);
    const QVector<qint64> ids = queue->ids();
    for (const qint64 id : ids) {
        if (queue->question(id).id != 0)
            take(queue->question(id));
    }
}

void ConflictDesk::take(const VellTransferQuestion &question)
{
    if (isListed())
        return; // the dialog lists the question itself
    if (!question.canReplace || !isAlone(question.id)) {
        m_gather.start();
        return;
    }
    m_single.append(question.id);
    QMetaObject::invokeMethod(this, &ConflictDesk::promptNext, Qt::QueuedConnection);
}

//! A closed dialog exists for a moment longer.
bool ConflictDesk::isListed() const
{
    return m_dialog && m_dialog->isVisible();
}

//! Returns true if the transfer is the only one of its batch.
bool ConflictDesk::isAlone(qint64 id) const
{
    const int batch = m_queue->transfer(id).batch;
    const QVector<qint64> ids = m_queue->ids();
    for (const qint64 other : ids) {
        if (other != id && m_queue->transfer(other).batch == batch)
            return false;
    }
    return true;
}

void ConflictDesk::promptNext()
{
    if (m_isPrompting || m_single.isEmpty())
        return;
    const VellTransferQuestion question = m_queue->question(m_single.takeFirst());
    if (question.id != 0) {
        const QPointer<ConflictDesk> self(this);
        m_isPrompting = true;
        bool isForLater = false;
        const int button = VellPubDoc::showSameNameMsgBox(m_queue->transfer(question.id).name,
                                                          question.freeName, isForLater);
        if (!self)
            return; // the window was closed meanwhile
        m_isPrompting = false;
        answer(question, button, isForLater);
    }
    promptNext();
}

void ConflictDesk::answer(const VellTransferQuestion &question, int button, bool isForLater)
{
    VellConflictPolicy decision = VellConflictPolicy::Ask;
    switch (button) {
    case QMessageBox::Ok:
        decision = VellConflictPolicy::Replace;
        break;
    case QMessageBox::Save:
        decision = VellConflictPolicy::KeepBoth;
        break;
    case QMessageBox::Discard:
        decision = VellConflictPolicy::Skip;
        break;
    default:
        m_queue->cancel(question.id);
        return;
    }
    m_queue->answer(question.id, decision);
    if (!isForLater)
        return;
    for (const qint64 id : qAsConst(m_single))
        m_queue->answer(id, decision);
    m_single.clear();
}

void ConflictDesk::showList()
{
    if (isListed())
        return;
    const QVector<qint64> ids = m_queue->ids();
    const bool isAny = std::any_of(ids.begin(), ids.end(),
                                   [this](qint64 id) { return m_queue->question(id).id != 0; });
    if (!isAny)
        return;
    m_dialog = new ConflictDialog(m_queue, m_session, m_window);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->open();
}

} // namespace desktop
