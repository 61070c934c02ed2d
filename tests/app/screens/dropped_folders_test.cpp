#include "app/screens/dropped_folders.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(DroppedFolders, readsOneAddressALineAndSkipsRemarks)
{
    EXPECT_EQ(droppedFolders("# from a file browser\r\nfile:///a%20b\r\nfile:///c/\r\n"),
              (std::vector{FileURL::directory("/a b"), FileURL::directory("/c")}));
}

TEST(DroppedFolders, keepsNamesThatAreNotText)
{
    EXPECT_EQ(droppedFolders("file:///caf%E9"), std::vector{FileURL::directory("/caf\xe9")});
}

TEST(DroppedFolders, leavesOutWhatIsNotOnThisMachine)
{
    EXPECT_TRUE(droppedFolders("https://example.org/\nfile://elsewhere/x\nnonsense\n").empty());
    EXPECT_TRUE(droppedFolders("").empty());
}

}  // namespace gruk
