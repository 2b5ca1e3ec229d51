#pragma once

#include <QEventLoop>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrent>

//! Runs \a function on the global thread pool, processes the events of the calling thread meanwhile, and returns the result.
//!
//! The calling object may be deleted meanwhile; it is not accessed here.
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
