#include <operations/OperationLanes.h>

#include <operations/VellOperation.h>

namespace {

constexpr int ThreadCounts[] = {4, 4, 2};

} // namespace

OperationLanes::OperationLanes()
{
    for (int lane = 0; lane < LaneCount; ++lane)
        m_pools[lane].setMaxThreadCount(ThreadCounts[lane]);
}

OperationLanes::~OperationLanes() = default;

void OperationLanes::start(VellOperation *operation, Lane lane, const ServiceScope &scope)
{
    const auto run = std::make_shared<OperationRun>(scope, std::move(operation->m_work), operation);
    operation->m_run = run;
    m_pools[int(lane)].start([run] { run->execute(); });
}
