#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <latch>
#include <optional>
#include <string>
#include <vector>

#include "core/browse/scan_engine.h"
#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

constexpr std::chrono::seconds longEnough(30);

/// An engine over the disk, one folder of which does not answer when it is listed first.
class ScanEngineTurnsTest : public testing::Test {
protected:
    ScanEngineTurnsTest()
    {
        disk.file("hanging/x", 1);
        disk.file("other/y", 10);
    }

    /// Begins to walk the folder that hangs; returns when it does.
    std::future<std::optional<DirectoryStats>> walkThatHangs()
    {
        auto walk = std::async(std::launch::async, [this]() -> std::optional<DirectoryStats> {
            try {
                return engine.stats(FileURL(disk.path("hanging")), {}, stop.get_token());
            } catch (const CancelledError&) {
                return std::nullopt;
            }
        });
        hangs.wait();
        return walk;
    }

    test::TemporaryDirectory disk;
    std::latch hangs{1};
    std::latch answers{1};
    std::atomic<bool> hasHung = false;
    std::stop_source stop;
    ScanEngine engine{[this](const FileURL& url) {
        if (url.lastPathComponent() == "hanging" && !hasHung.exchange(true)) {
            std::vector<FileEntry> before = MetadataReader::entries(url);
            hangs.count_down();
            answers.wait();
            return before;
        }
        return MetadataReader::entries(url);
    }};
};

}  // namespace

TEST_F(ScanEngineTurnsTest, aWalkThatHangsHoldsUpNoOtherOnceItIsCancelled)
{
    auto hanging = walkThatHangs();
    auto other = std::async(std::launch::async,
                            [this] { return engine.stats(FileURL(disk.path("other"))); });
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(0)), std::future_status::timeout);
    stop.request_stop();
    const bool goesOn = other.wait_for(longEnough) == std::future_status::ready;
    EXPECT_TRUE(goesOn);
    answers.count_down();
    EXPECT_EQ(other.get().logical, 10);
    static_cast<void>(hanging.get());
}

TEST_F(ScanEngineTurnsTest, whatACancelledWalkFindsLateIsNotRemembered)
{
    auto hanging = walkThatHangs();
    stop.request_stop();
    auto forgetting = std::async(std::launch::async, [this] { engine.invalidate(); });
    EXPECT_EQ(forgetting.wait_for(longEnough), std::future_status::ready);
    disk.file("hanging/more", 100);
    answers.count_down();
    static_cast<void>(hanging.get());
    EXPECT_EQ(engine.stats(FileURL(disk.path("hanging"))).logical, 101);
}

TEST_F(ScanEngineTurnsTest, aCallThatIsCancelledWhileItWaitsEndsAtOnce)
{
    auto hanging = walkThatHangs();
    std::stop_source impatient;
    auto waiting = std::async(std::launch::async, [&] {
        EXPECT_THROW(
            static_cast<void>(engine.stats(FileURL(disk.path("other")), {}, impatient.get_token())),
            CancelledError);
    });
    impatient.request_stop();
    EXPECT_EQ(waiting.wait_for(longEnough), std::future_status::ready);
    answers.count_down();
    EXPECT_EQ(hanging.get().value().logical, 1);
}

}  // namespace gruk
