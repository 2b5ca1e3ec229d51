#pragma once

#include <QThreadPool>

#include <memory>
#include <utility>

//! Destroys what \a container holds on a thread of the global pool: for 100,000 entries that takes longer than a frame of the
//! screen. \a container is empty afterwards. Nothing in it may belong to a thread.
template <typename Container>
void releaseInBackground(Container &container)
{
    auto content = std::make_shared<Container>(std::move(container));
    container = Container();
    QThreadPool::globalInstance()->start([content = std::move(content)] {});
}
