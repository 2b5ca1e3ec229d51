#include <models/VellChangePoll.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <models/DropRequest.h>
#include <models/VellDocumentModel.h>
#include <models/VellFolderModel.h>
#include <session/VellSession.h>

#include <algorithm>

namespace {

constexpr int FirstPage = 20; // usually nothing has changed
constexpr int NextPages = 200;

} // namespace

VellChangePoll::VellChangePoll(VellDocuments *documents, QObject *parent)
    : QObject(parent), m_documents(documents)
{
    m_timer.setSingleShot(true);
    setInterval(std::chrono::seconds(30));
    connect(&m_timer, &QTimer::timeout, this, &VellChangePoll::poll);
    connect(documents->store(), &VellDocumentStore::cleared, this, &VellChangePoll::reset);
    connect(documents->session(), &VellSession::stateChanged, this,
            [this](VellSession::State state) {
                if (state == VellSession::State::Online && m_isStarted)
                    poll();
            });
}

VellChangePoll::~VellChangePoll()
{
    dropRequest(m_request, this);
}

void VellChangePoll::setInterval(std::chrono::milliseconds interval)
{
    m_timer.setInterval(interval);
}

void VellChangePoll::follow(VellDocumentModel *model)
{
    m_folders.append([model = QPointer<VellDocumentModel>(model)] {
        const bool isFolder = model && model->source().kind() == VellDocumentSource::Kind::Folder;
        return isFolder ? QStringList(model->source().condition().parentId) : QStringList();
    });
}

void VellChangePoll::follow(VellFolderModel *model)
{
    m_folders.append([model = QPointer<VellFolderModel>(model)] {
        return model ? model->openedFolders() : QStringList();
    });
}

void VellChangePoll::start()
{
    m_isStarted = true;
    if (!m_request)
        m_timer.start();
}

void VellChangePoll::stop()
{
    m_isStarted = false;
    m_timer.stop();
    m_queue.clear();
    dropRequest(m_request, this);
}

void VellChangePoll::reset()
{
    dropRequest(m_request, this);
    m_queue.clear();
    m_seen.clear();
    if (m_isStarted)
        m_timer.start();
}

void VellChangePoll::poll()
{
    if (m_request || m_documents->session()->state() != VellSession::State::Online)
        return; // called again when the session is online
    m_timer.stop();
    m_queue.clear();
    for (const auto &folders : qAsConst(m_folders))
        m_queue += folders();
    m_queue.removeDuplicates();
    for (auto seen = m_seen.begin(); seen != m_seen.end();)
        seen = m_queue.contains(seen.key()) ? std::next(seen) : m_seen.erase(seen);
    askNext();
}

void VellChangePoll::askNext()
{
    if (m_queue.isEmpty()) {
        endRound();
        return;
    }
    m_next = {};
    m_isChanged = false;
    ask(m_queue.takeFirst(), 0, FirstPage);
}

void VellChangePoll::endRound()
{
    if (m_isStarted)
        m_timer.start();
    Q_EMIT polled();
}

void VellChangePoll::ask(const QString &folderId, int skip, int limit)
{
    VellDocumentConditon condition;
    condition.parentId = folderId;
    VellDocumentSort latestFirst;
    latestFirst.isDefault = false;
    m_request = m_documents->page(condition, latestFirst, skip, limit)
                    ->then(
                        this,
                        [this, folderId](const VellPage &page) {
                            m_request = nullptr;
                            compare(folderId, page);
                        },
                        [this, folderId](const VellError &error) {
                            m_request = nullptr;
                            Q_EMIT pollFailed(folderId, error);
                            askNext();
                        });
}

void VellChangePoll::compare(const QString &folderId, const VellPage &page)
{
    const bool isKnown = m_seen.contains(folderId);
    const Seen seen = m_seen.value(folderId);
    bool reachesSeen = page.skip + page.documents.size() >= page.total;
    for (const VellDocument &document : page.documents) {
        if (page.skip == 0)
            m_next.newest.insert(document._id, document.updatedAt);
        const bool isSeen = document.updatedAt < seen.until
            || (seen.newest.contains(document._id)
                && seen.newest.value(document._id) == document.updatedAt);
        m_isChanged = m_isChanged || !isSeen;
        reachesSeen = reachesSeen || isSeen;
    }
    if (page.skip == 0) {
        m_next.total = page.total;
        if (!page.documents.isEmpty())
            m_next.until = page.documents.constFirst().updatedAt;
    }
    if (isKnown && !reachesSeen && !page.documents.isEmpty()) {
        ask(folderId, page.skip + page.documents.size(), NextPages);
        return;
    }
    // Changes between the request of the model and the first round are not known either.
    if (!isKnown || m_isChanged || m_next.total != seen.total) {
        m_seen.insert(folderId, m_next);
        m_documents->store()->markFolderChanged(folderId);
    }
    askNext();
}
