#include <transfer/VellFileWatch.h>

#include <transfer/VellTransferQueue.h>

#include <VellPublicFun/VellPub.h>

#include <QDateTime>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <atomic>

namespace {

//! The properties by which a change of a file is detected.
struct FileLook
{
    bool isThere = false;
    QDateTime modifiedAt;
    qint64 sizeBytes = 0;
    QString md5;
};

//! Does not read the file.
FileLook lookAt(const QString &path)
{
    const QFileInfo info(path);
    return {info.isFile(), info.lastModified(), info.size(), {}};
}

QString cleaned(const QString &path)
{
    return QFileInfo(path).absoluteFilePath();
}

} // namespace

class VellFileWatch::Private
{
public:
    struct Entry
    {
        VellDocument document;
        FileLook added; // without the MD5
        QString md5; // of the content that was reported last, or of the first one
        bool isKnown = false; // the file has been read
        bool isGone = false;
        std::shared_ptr<QTimer> settle;
    };

    explicit Private(VellFileWatch *watch) : q(watch) { m_pool.setMaxThreadCount(1); }

    ~Private()
    {
        m_isEnding = true;
        m_pool.clear();
        m_pool.waitForDone();
    }

    void touch(const QString &path)
    {
        const auto entry = m_entries.constFind(path);
        if (entry != m_entries.cend())
            entry->settle->start(m_settleTime);
    }

    void touchFolder(const QString &folder)
    {
        for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry) {
            if (QFileInfo(entry.key()).path() == folder)
                touch(entry.key());
        }
    }

    void look(const QString &path)
    {
        m_pool.start([this, path] {
            const QString md5 = VellPub::getFileMd5(path, [this](qint64) { return !m_isEnding; });
            // Afterwards, so that a change meanwhile is not taken for settled.
            FileLook look = lookAt(path);
            look.md5 = md5;
            QMetaObject::invokeMethod(
                q, [this, path, look] { take(path, look); }, Qt::QueuedConnection);
        });
    }

    void take(const QString &path, const FileLook &look)
    {
        const auto entry = m_entries.find(path);
        if (entry == m_entries.end())
            return;
        // If another file replaces the file, QFileSystemWatcher no longer watches it.
        if (look.isThere && !m_watcher.files().contains(path))
            m_watcher.addPath(path);
        const bool isUnchanged =
            look.modifiedAt == entry->added.modifiedAt && look.sizeBytes == entry->added.sizeBytes;
        if (!std::exchange(entry->isKnown, true) && isUnchanged) {
            entry->md5 = look.md5;
            return;
        }
        if (!look.isThere) {
            if (!std::exchange(entry->isGone, true))
                Q_EMIT q->vanished(path);
            return;
        }
        entry->isGone = false;
        const bool isUnsettled =
            look.modifiedAt.msecsTo(QDateTime::currentDateTime()) < m_settleTime.count();
        if (isUnsettled || look.md5.isEmpty()) {
            touch(path);
            return;
        }
        if (look.md5 == entry->md5)
            return;
        entry->md5 = look.md5;
        Q_EMIT q->changed(path);
    }

    VellFileWatch *const q;
    QFileSystemWatcher m_watcher;
    QHash<QString, Entry> m_entries;
    std::chrono::milliseconds m_settleTime{1000};
    std::atomic<bool> m_isEnding{false};
    QThreadPool m_pool;
};

VellFileWatch::VellFileWatch(QObject *parent) : QObject(parent), d(std::make_unique<Private>(this))
{
    connect(&d->m_watcher, &QFileSystemWatcher::fileChanged, this,
            [this](const QString &path) { d->touch(path); });
    connect(&d->m_watcher, &QFileSystemWatcher::directoryChanged, this,
            [this](const QString &folder) { d->touchFolder(folder); });
}

VellFileWatch::~VellFileWatch() = default;

void VellFileWatch::setSettleTime(std::chrono::milliseconds time)
{
    d->m_settleTime = time;
}

void VellFileWatch::add(const QString &path, const VellDocument &document)
{
    const QString clean = cleaned(path);
    Private::Entry entry{document, lookAt(clean), {}, false, false, std::make_shared<QTimer>()};
    entry.settle->setSingleShot(true);
    connect(entry.settle.get(), &QTimer::timeout, this, [this, clean] { d->look(clean); });
    d->m_entries.insert(clean, entry);
    d->m_watcher.addPath(clean);
    d->m_watcher.addPath(QFileInfo(clean).path());
    d->look(clean);
}

void VellFileWatch::remove(const QString &path)
{
    const QString clean = cleaned(path);
    if (d->m_entries.remove(clean) == 0)
        return;
    d->m_watcher.removePath(clean);
    const QString folder = QFileInfo(clean).path();
    const QStringList left = d->m_entries.keys();
    if (std::none_of(left.begin(), left.end(),
                     [&folder](const QString &other) { return QFileInfo(other).path() == folder; }))
        d->m_watcher.removePath(folder);
}

VellDocument VellFileWatch::document(const QString &path) const
{
    return d->m_entries.value(cleaned(path)).document;
}

qint64 VellFileWatch::queueVersion(const QString &path, VellTransferQueue *queue)
{
    const QString clean = cleaned(path);
    const VellDocument base = document(clean);
    if (base._id.isEmpty())
        return 0;
    const qint64 id = queue->uploadVersion(clean, base);
    auto *const waiting = new QObject(this);
    connect(queue, &VellTransferQueue::ended, waiting,
            [this, id, clean, waiting](const VellTransfer &transfer, const VellDocument &made) {
                if (transfer.id != id)
                    return;
                const auto entry = d->m_entries.find(clean);
                if (transfer.state == VellTransferState::Done && entry != d->m_entries.end())
                    entry->document = made;
                if (transfer.state == VellTransferState::Done)
                    waiting->deleteLater();
            });
    return id;
}
