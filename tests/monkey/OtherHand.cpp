#include "OtherHand.h"

#include <algorithm>

OtherHand::OtherHand(MonkeyWorld *world) : m_world(world), m_documents(&m_session)
{
    world->ledger.follow(&m_documents);
    world->ledger.follow(&m_queue);
    m_queue.attach(&m_documents);
    VellConnection connection;
    connection.address = world->service.baseApi();
    connection.accessToken = world->otherToken();
    connection.proxy = QStringLiteral("none");
    m_session.open(connection);
    m_session.openProject(QStringLiteral("p1"));
}

void OtherHand::look()
{
    VellDocumentConditon all;
    all.hasParentId = false;
    m_documents.list(all)->then(
        &m_documents, [this](const QList<VellDocument> &documents) { m_known = documents; },
        [](const VellError &) {});
}

VellDocument OtherHand::known(Dice *dice, bool isFolder) const
{
    QList<VellDocument> fitting;
    std::copy_if(m_known.begin(), m_known.end(), std::back_inserter(fitting),
                 [isFolder](const VellDocument &document) {
                     return (document.type == QLatin1String("dir")) == isFolder;
                 });
    return fitting.isEmpty() ? VellDocument() : dice->pick(fitting);
}

QString OtherHand::act(Dice *dice)
{
    const QString folderId = dice->chance(50) ? QString() : known(dice, true)._id;
    const VellDocument entry = known(dice, dice->chance(25));
    switch (dice->roll(entry._id.isEmpty() ? 3 : 7)) {
    case 0:
        look();
        return QStringLiteral("looks");
    case 1: {
        const QString name = dice->name();
        m_queue.upload(m_world->newFile(name, dice->size()), folderId,
                       dice->chance(50) ? VellConflictPolicy::KeepBoth
                                        : VellConflictPolicy::Replace);
        return QStringLiteral("stores ") + name;
    }
    case 2:
        m_documents.createFolder(folderId, dice->name());
        return QStringLiteral("makes a folder");
    case 3: {
        const QString name = dice->text();
        m_world->ledger.noteName(entry._id, name);
        m_documents.rename(entry._id, name);
        return QStringLiteral("renames %1 to %2").arg(entry.name, name);
    }
    case 4:
        m_world->ledger.noteMoving({entry._id}, folderId);
        m_documents.move({entry._id}, folderId);
        return QStringLiteral("moves ") + entry.name;
    case 5:
        if (!dice->chance(40))
            return QStringLiteral("hesitates");
        m_world->ledger.noteDeleting({entry._id});
        m_documents.remove({entry._id});
        return QStringLiteral("deletes ") + entry.name;
    default:
        m_documents.setRemark(entry._id, dice->text());
        return QStringLiteral("remarks on ") + entry.name;
    }
}
