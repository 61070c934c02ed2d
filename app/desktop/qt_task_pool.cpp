#include "app/desktop/qt_task_pool.h"

#include <algorithm>
#include <utility>

#include <QtConcurrentRun>

namespace gruk {

namespace {

constexpr int fewestThreads = 4;

}  // namespace

QtTaskPool::QtTaskPool()
{
    threads_.setMaxThreadCount(std::max(fewestThreads, QThread::idealThreadCount()));
}

QtTaskPool::~QtTaskPool()
{
    threads_.waitForDone();
}

void QtTaskPool::start(std::function<void()> work)
{
    // The work tells its own outcome; nobody asks the future.
    [[maybe_unused]] const auto unasked = QtConcurrent::run(&threads_, std::move(work));
}

bool QtTaskPool::waitForDone(std::chrono::milliseconds limit)
{
    return threads_.waitForDone(static_cast<int>(limit.count()));
}

}  // namespace gruk
