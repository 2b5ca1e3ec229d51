#include <desktop/app/FreeMemory.h>

#include <transfer/VellTransferQueue.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace desktop {

namespace {

constexpr int IdleMs = 3000; // another transfer may follow

#ifdef __GLIBC__
constexpr int SharedPools = 2; // by default there are eight for each processor

void returnAll()
{
    malloc_trim(0);
}
#else
void returnAll() {}
#endif

} // namespace

FreeMemory::FreeMemory(const VellTransferQueue *queue, QObject *parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(IdleMs);
    connect(queue, &VellTransferQueue::ended, &m_timer, QOverload<>::of(&QTimer::start));
    connect(&m_timer, &QTimer::timeout, this, [queue] {
        if (queue->totals().openCount() == 0)
            returnAll();
    });
}

void FreeMemory::share()
{
#ifdef __GLIBC__
    mallopt(M_ARENA_MAX, SharedPools);
#endif
}

} // namespace desktop
