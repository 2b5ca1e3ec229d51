#pragma once

#include <QEventLoop>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrent>

//! Runs \a function on the global thread pool and returns its result once it is there, while the events of the
//! calling thread run.
//!
//! The caller may have been deleted meanwhile; nothing of it is touched here.
template <typename Function>
auto runAndWait(Function function)
{
    const auto future = QtConcurrent::run(QThreadPool::globalInstance(), function);
    QFutureWatcher<decltype(function())> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(future);
    loop.exec();
    return future.result();
}
