#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "platform/files/moves.h"
#include "platform/files/trash.h"
#include "platform/foundation/errors.h"
#include "tests/support/move_faults.h"
#include "tests/support/private_mounts.h"
#include "tests/support/trash_house.h"

// A fault, or the end of the process, at every single call that a move makes.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::itemRecord;
using test::MoveFaults;
using test::stands;
using test::TrashHouse;
using test::TreeRecord;
using test::treeRecord;

enum class Operation {
    trashFile,
    trashFolder,
    trashTakenName,
    trashOnVolume,
    restore,
    move,
    moveOver,
    makeFolder
};

constexpr std::array operations{
    Operation::trashFile, Operation::trashFolder, Operation::trashTakenName, Operation::restore,
    Operation::move,      Operation::moveOver,    Operation::makeFolder};

constexpr std::array errors{ENOSPC, EDQUOT, EIO, EACCES, EROFS, EXDEV, ENAMETOOLONG, EMFILE, EINTR};

/// A volume in memory, for as long as the object lives.
class MountedMemory {
public:
    explicit MountedMemory(std::string path) : path_(std::move(path)) { test::mountMemory(path_); }
    ~MountedMemory() { test::unmount(path_); }
    MountedMemory(const MountedMemory&) = delete;
    MountedMemory& operator=(const MountedMemory&) = delete;

private:
    std::string path_;
};

/// A house in which one operation is about to happen, and what must hold after it.
class Scene {
public:
    explicit Scene(Operation operation) : operation_(operation)
    {
        const auto& directory = house_.directory();
        directory.folder("home/other");
        directory.folder("root");
        if (operation == Operation::trashOnVolume) {
            volume_ = std::make_unique<MountedMemory>(house_.path("root"));
        }
        directory.fileWith("root/canary", "canary");
        directory.fileWith("root/item/inner/deep", "content");
        if (operation != Operation::trashFolder) {
            fs::remove_all(house_.path("root/item"));
            directory.fileWith("root/item", "content");
        }
        if (operation == Operation::trashTakenName) {
            directory.fileWith("data/Trash/info/item.trashinfo", "[Trash Info]\nPath=/x\n");
        }
        if (operation == Operation::restore) {
            from_ = trashItem(house_.url("root/item"));
        }
        record_ = itemRecord(from_.path());
        others_ = others();
    }

    /// Runs it; throws what it throws.
    void run(const MoveCalls& calls)
    {
        const MoveConditions conditions{house_.url("root"), identity()};
        switch (operation_) {
        case Operation::restore:
            return restoreTrashedItem(from_, house_.url("root/item"), conditions, calls);
        case Operation::move:
        case Operation::moveOver:
            return moveItem(from_, house_.url("root/moved"), conditions, withoutPromise(calls));
        case Operation::makeFolder:
            return makeDirectory(house_.url("root/made"), conditions, calls);
        default:
            static_cast<void>(trashItem(from_, conditions, calls));
        }
    }

    /// The places where the item is, whole and untouched.
    [[nodiscard]] std::vector<std::string> places() const
    {
        std::vector<std::string> found;
        for (const auto& [path, record] : treeRecord(house_.directory().path())) {
            if (record == record_) {
                found.push_back(house_.path(path));
            }
        }
        return found;
    }

    [[nodiscard]] bool isWhereItWas() const { return places() == std::vector{from_.path()}; }

    /// Whether everything but the item, its info file and its note of a size is as it was.
    [[nodiscard]] bool areOthersUntouched() const { return others() == others_; }

    /// How many files there are in the "info" folders beyond those that were there.
    [[nodiscard]] long strayInfoFiles() const
    {
        long count =
            operation_ == Operation::trashTakenName || operation_ == Operation::restore ? -1 : 0;
        for (const auto& [path, record] : treeRecord(house_.directory().path())) {
            count += path.ends_with(".trashinfo") ? 1 : 0;
        }
        return count;
    }

    [[nodiscard]] bool hasPlaceHolder() const { return stands(house_.path("root/moved")); }
    [[nodiscard]] bool hasMadeFolder() const { return stands(house_.path("root/made")); }
    [[nodiscard]] const TrashHouse& house() const { return house_; }

private:
    [[nodiscard]] MoveCalls withoutPromise(const MoveCalls& calls) const
    {
        MoveCalls result = calls;
        if (operation_ == Operation::moveOver) {
            result.moveWithoutReplacing =
                [counted = calls.moveWithoutReplacing](int, const char* from, int toDirectory,
                                                       const char* to) {
                    // The call is counted, on a name that is surely not there.
                    const int fault = counted(-1, from, toDirectory, to);
                    return fault == -EBADF ? -EINVAL : fault;
                };
        }
        return result;
    }

    [[nodiscard]] ItemIdentity identity() const
    {
        const ItemFacts facts = itemFacts(from_);
        return {facts.deviceID, facts.inode, facts.type};
    }

    /// What must never change, wherever it is: every file that is neither the item nor of the
    /// Trash's own making.
    [[nodiscard]] TreeRecord others() const
    {
        TreeRecord record;
        for (const auto& [path, text] : treeRecord(house_.directory().path())) {
            const bool isTrash = path.find("Trash") != std::string::npos;
            const bool isInner = path.find("/inner") != std::string::npos;
            // Of a move over a place-holder that was cut off, the place-holder stays, empty.
            const bool isPlaceHolder = path == "root/moved" && text.ends_with(" 0");
            const bool isFile = (std::stoul(text.substr(text.find(' '))) & S_IFMT) == S_IFREG;
            if (isFile && !isTrash && !isInner && !isPlaceHolder && text != record_) {
                record[path] = text;
            }
        }
        return record;
    }

    Operation operation_;
    /// In memory, where there is room: thousands of scenes are set up and taken down.
    test::EnvironmentVariable temporary_{"TMPDIR",
                                         fs::is_directory("/dev/shm") ? "/dev/shm" : "/tmp"};
    TrashHouse house_;
    std::unique_ptr<MountedMemory> volume_;
    FileURL from_ = house_.url("root/item");
    std::string record_;
    TreeRecord others_;
};

/// The calls of an operation in which nothing fails.
std::vector<std::string> callsWithoutFault(Operation operation)
{
    Scene scene(operation);
    const MoveFaults faults;
    scene.run(faults.calls(test::unsynchronizedCalls()));
    return faults.names();
}

/// What is wrong after one operation with a fault; empty when nothing is.
std::string complaintAfter(const MoveFaults& faults, Operation operation)
{
    Scene scene(operation);
    bool isReported = false;
    std::string complaint;
    try {
        scene.run(faults.calls(test::unsynchronizedCalls()));
    } catch (const FileError& error) {
        isReported = true;
        complaint += error.code().value() == 0 || describe(error).empty() ? "no words. " : "";
    }
    complaint += faults.isHit() ? "" : "the fault was not reached. ";
    complaint += scene.places().size() == 1 ? "" : "the item is not in exactly one place. ";
    complaint += scene.areOthersUntouched() ? "" : "something else was touched. ";
    if (operation == Operation::makeFolder) {
        complaint += scene.hasMadeFolder() == !isReported ? "" : "the folder tells otherwise. ";
    } else {
        complaint += scene.isWhereItWas() == isReported ? "" : "the item tells otherwise. ";
    }
    // Without a look at it, a file cannot be told from another one, and stays.
    const bool canClear = faults.span == MoveFaults::Span::once || !faults.lookingFails;
    const long strays = scene.strayInfoFiles();
    const bool isRestore = operation == Operation::restore;
    if (isReported && canClear && strays != 0) {
        complaint += "a stray info file. ";
    }
    if (isReported && canClear && operation == Operation::moveOver && scene.hasPlaceHolder()) {
        complaint += "a stray place-holder. ";
    }
    if (!isReported && !isRestore && operation != Operation::move
        && operation != Operation::moveOver && operation != Operation::makeFolder && strays != 1) {
        complaint += "no info file. ";
    }
    return complaint;
}

struct Tally {
    int faults = 0;
    std::string complaint;
};

Tally tryEveryFault(Operation operation)
{
    Tally tally;
    const std::vector<std::string> calls = callsWithoutFault(operation);
    for (const int error : errors) {
        for (const auto span : {MoveFaults::Span::once, MoveFaults::Span::fromThenOn}) {
            for (std::size_t number = 0; number < calls.size(); ++number) {
                MoveFaults faults;
                faults.failAt = number;
                faults.error = error;
                faults.span = span;
                faults.lookingFails =
                    error != ENOSPC && error != EDQUOT && error != EROFS && error != EXDEV;
                if (span == MoveFaults::Span::fromThenOn && !faults.fails(calls[number])) {
                    continue;
                }
                ++tally.faults;
                const std::string complaint = complaintAfter(faults, operation);
                if (!complaint.empty()) {
                    tally.complaint += "operation " + std::to_string(static_cast<int>(operation))
                                       + ", error " + std::to_string(error) + " at call "
                                       + std::to_string(number) + " (" + calls[number] + ")"
                                       + (span == MoveFaults::Span::once ? "" : " and from then on")
                                       + ": " + complaint + "\n";
                }
            }
        }
    }
    return tally;
}

void tell(const std::string& name, int count)
{
    ::testing::Test::RecordProperty(name, count);
    std::cout << name << ": " << count << "\n" << std::flush;
}

TEST(MoveFaults, anErrorAtAnyCallLeavesEveryItemInExactlyOnePlace)
{
    int faults = 0;
    for (const Operation operation : operations) {
        const Tally tally = tryEveryFault(operation);
        EXPECT_EQ(tally.complaint, "");
        faults += tally.faults;
    }
    tell("faults at home", faults);
    EXPECT_GT(faults, 2'000);
}

TEST(MoveFaults, anErrorAtAnyCallLeavesEveryItemInExactlyOnePlaceOnAVolume)
{
    const test::MountedRun run = test::runWithPrivateMounts([] {
        const Tally tally = tryEveryFault(Operation::trashOnVolume);
        tell("faults on a volume", tally.faults);
        return tally.complaint + (tally.faults > 500 ? "" : "too few faults");
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

/// Runs the operation in a child process that is killed just before a call; whether it was.
bool isKilledBefore(Scene& scene, std::size_t number)
{
    const pid_t child = ::fork();
    if (child == 0) {
        MoveFaults faults;
        faults.before = [number](std::size_t call, std::string_view) {
            if (call == number) {
                ::kill(::getpid(), SIGKILL);
            }
        };
        try {
            scene.run(faults.calls(test::unsynchronizedCalls()));
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

TEST(MoveFaults, aKillBeforeAnyCallLeavesEveryItemInExactlyOnePlace)
{
    int kills = 0;
    for (const Operation operation : operations) {
        const std::vector<std::string> calls = callsWithoutFault(operation);
        for (std::size_t number = 0; number < calls.size(); ++number) {
            Scene scene(operation);
            ASSERT_TRUE(isKilledBefore(scene, number));
            ++kills;
            ASSERT_EQ(scene.places().size(), 1U) << calls[number];
            EXPECT_TRUE(scene.areOthersUntouched()) << calls[number];
            // What was cut off can be done again, and undone.
            const FileURL place(scene.places().front());
            if (place.path().find("Trash/files") == std::string::npos) {
                const FileURL now = trashItem(place);
                EXPECT_EQ(scene.places(), std::vector{now.path()});
                restoreTrashedItem(now, place);
            } else {
                restoreTrashedItem(place, scene.house().url("root/item"));
            }
            EXPECT_EQ(scene.places().size(), 1U);
        }
    }
    tell("kills", kills);
    EXPECT_GT(kills, 100);
}

TEST(MoveFaults, shortWritesAreContinued)
{
    Scene scene(Operation::trashFolder);
    MoveFaults faults;
    faults.longestWrite = 7;
    scene.run(faults.calls(test::unsynchronizedCalls()));
    const std::string info = scene.house().directory().read("data/Trash/info/item.trashinfo");
    EXPECT_TRUE(info.starts_with("[Trash Info]\nPath=" + scene.house().path("root/item") + "\n"));
    EXPECT_TRUE(info.ends_with("\n"));
}

}  // namespace

}  // namespace gruk
