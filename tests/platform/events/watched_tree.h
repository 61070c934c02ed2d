#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/descriptor.h"
#include "platform/linux/file_event_tree.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// A tree that is read when the test says so. The kernel puts a record into the queue before the
/// call that causes it returns, so that nothing has to be waited for.
class WatchedTree {
public:
    explicit WatchedTree(const FileURL& root, WatchCalls calls = WatchCalls::live(),
                         UnheardItems unheard = {})
        : tree(root, queue_.number(), std::move(calls), std::move(unheard))
    {
    }

    /// Hands everything that is in the queue to the tree; whether any of it is a change.
    bool read()
    {
        bool isChange = false;
        std::vector<char> buffer(65'536);
        for (;;) {
            const ssize_t length = ::read(queue_.number(), buffer.data(), buffer.size());
            if (length <= 0) {
                return isChange;
            }
            readFileEventRecords(
                std::string_view(buffer.data(), static_cast<std::size_t>(length)),
                [&](const FileEventRecord& record) { isChange = tree.handle(record) || isChange; });
        }
    }

    /// Reads and works until neither has anything left; whether any of it is a change.
    bool settle()
    {
        bool isChange = read();
        while (tree.hasWork()) {
            isChange = tree.work(1) || isChange;
            isChange = read() || isChange;
        }
        return isChange;
    }

    /// Whether a file made there is heard of, and nothing is heard of without one.
    bool hears(const std::string& path)
    {
        if (settle()) {
            ADD_FAILURE() << "a change before anything changed";
        }
        const Descriptor file(::open(path.c_str(), O_CREAT | O_EXCL | O_RDONLY | O_CLOEXEC, 0600));
        EXPECT_TRUE(file.isOpen()) << path << ": " << errno;
        return settle();
    }

private:
    Descriptor queue_{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};

public:
    FileEventTree tree;
};

class FileEventTreeFixture : public testing::Test {
protected:
    /// Watches the folder when the clock that stamps directories has passed the moment of its last
    /// change: what is of the same moment as the beginning counts as a change.
    WatchedTree watch(WatchCalls calls = WatchCalls::live(), UnheardItems unheard = {})
    {
        letTheClockTick();
        return WatchedTree(FileURL::directory(disk.path("realm")), std::move(calls),
                           std::move(unheard));
    }

    static void letTheClockTick()
    {
        timespec last{};
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &last);
        do {
            ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
        } while (std::pair(now.tv_sec, now.tv_nsec) <= std::pair(last.tv_sec, last.tv_nsec));
    }

    [[nodiscard]] std::string path(const std::string& relative) const
    {
        return disk.path("realm/" + relative);
    }

    static void rename(const std::string& from, const std::string& to)
    {
        ASSERT_EQ(::rename(from.c_str(), to.c_str()), 0) << from << " to " << to;
    }

    TemporaryDirectory disk;
    std::string realm = disk.folder("realm");
};

}  // namespace gruk::test
