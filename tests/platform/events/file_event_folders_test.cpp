#include "platform/linux/file_event_folders.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

TEST(FileEventFolders, aFolderOnWhichADiskIsMountedAfterItWasListedIsNotOpened)
{
    const test::TemporaryDirectory disk;
    disk.folder("realm/folder");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        FileEventFolders folders(FileURL::directory(disk.path("realm")));
        folders.setRoot(1);
        const int root = folders.openRoot();
        const auto names = root < 0 ? std::nullopt : folders.childrenOf(root);
        if (!names || *names != std::vector<std::string>{"folder"}) {
            return "the folder was not listed";
        }
        test::mountMemory(disk.path("realm/folder"));
        return folders.openChild(1, "folder") == -1 ? "" : "the mounted disk was opened";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

}  // namespace gruk
