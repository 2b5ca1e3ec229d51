#pragma once

#include "UploadWorld.h"

#include <QMap>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>

//! \brief One upload job against a store that answers by itself, for each test function.
//!
//! Requests are counted from 0; a test says which of them are answered late or otherwise.
class UploadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

protected:
    static constexpr int SlowMs = 300;

    VellDocument smallFile() const { return m_world->makeFile("a.txt", 10); }
    VellDocument largeFile() const
    {
        return m_world->makeFile("a.bin", UploadWorld::WholeFileLimit + 1);
    }
    void start(const VellDocument &doc, bool isCreate = true);

    //! Runs \a action, as the client's own event, when request number \a index has arrived.
    void whenRequested(int index, const std::function<void()> &action);

    //! Waits until so many requests have arrived and shows that no more come.
    void settles(int requests);

    QByteArray body(int request) const { return m_world->server.requests()[request].body; }

    std::unique_ptr<UploadWorld> m_world;
    std::unique_ptr<AsyncCreateDocument> m_job;
    std::unique_ptr<JobSpies> m_spies;
    ChunkStore m_store;
    QSet<int> m_slow; //!< answered after m_slowMs
    int m_slowMs = SlowMs;
    QMap<int, ScriptedReply> m_instead; //!< answered with this
};
