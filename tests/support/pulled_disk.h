#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/moves_house.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

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
        std::filesystem::create_directories(place_ + "/Desktop");
        std::ofstream(place_ + "/Desktop/a.png") << "not the one on the disk";
        bare_ = MovesHouse::censusWithPaths(place_);
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

    /// Only while it is out.
    void expectBareFolderUntouched() const
    {
        EXPECT_EQ(MovesHouse::censusWithPaths(place_), bare_);
        const std::filesystem::directory_iterator folder(place_ + "/Desktop");
        EXPECT_EQ(std::distance(begin(folder), end(folder)), 1) << "a record of the program's own";
    }

private:
    TemporaryDirectory disk_;
    std::string place_;
    std::multiset<std::string> bare_;
    bool isIn_ = false;
};

}  // namespace gruk::test
