#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// Makes a folder of somebody else's that looks much like the realm which stood there.
inline void makeLookAlike(const std::string& folder)
{
    std::filesystem::create_directories(folder);
    for (const char* name : {"/a.png", "/old.dmg"}) {
        std::ofstream(folder + name) << name;
    }
}

/// That nothing was put into it or taken out of it, no record of the program's own either.
inline void expectUntouchedLookAlike(const std::string& folder)
{
    constexpr int itemCount = 2;
    const std::filesystem::directory_iterator items(folder);
    EXPECT_EQ(std::distance(begin(items), end(items)), itemCount) << folder;
    for (const char* name : {"/a.png", "/old.dmg"}) {
        std::string content;
        EXPECT_TRUE(std::ifstream(folder + name) >> content) << folder << name;
        EXPECT_EQ(content, name) << folder;
    }
}

/// A disk with the realm in it, which can be pulled out at any moment and plugged in again. Where
/// it was, a bare folder comes to light that looks much like it.
class PulledDisk {
public:
    PulledDisk() { mountMemory(disk_.path()); }
    ~PulledDisk()
    {
        pullOut();
        unmount(disk_.path());
    }
    PulledDisk(const PulledDisk&) = delete;
    PulledDisk& operator=(const PulledDisk&) = delete;

    void prepare(const std::string& house)
    {
        place_ = house + "/disk";
        makeLookAlike(place_ + "/Desktop");
        plugIn();
    }

    void plugIn()
    {
        if (!isIn_) {
            mountAgain(disk_.path(), place_);
            isIn_ = true;
        }
    }

    void pullOut()
    {
        if (isIn_) {
            detach(place_);
            isIn_ = false;
        }
    }

private:
    TemporaryDirectory disk_;
    std::string place_;
    bool isIn_ = false;
};

}  // namespace gruk::test
