#pragma once

#include <velldoc/Session.h>

#include <QEventLoop>

namespace velldoc {

//! Starts one of the library's small jobs and waits for its end.
//!
//! \param finished the job's signal with the result, which is returned
//! \throws Failure when the job reports an error, or after Ctrl-C
template <typename Result, typename Job, typename Signal, typename Start>
Result awaitJob(Session &session, Signal finished, Start start)
{
    return session.ask([&] {
        Job job;
        Result result;
        QEventLoop loop;
        QObject::connect(&job, finished, &loop, [&](const Result &answer) {
            result = answer;
            loop.quit();
        });
        QObject::connect(&job, &Job::error, &loop, &QEventLoop::quit);
        start(job);
        loop.exec();
        return result;
    });
}

} // namespace velldoc
