#include "platform/linux/file_event_records.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <cstddef>
#include <cstring>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace gruk {

namespace {

using Records = std::vector<std::tuple<int, std::uint32_t, std::string>>;

/// A record as the kernel writes it, with room for `padded` bytes of name.
std::string record(int watch, std::uint32_t mask, const std::string& name, std::size_t padded)
{
    inotify_event event{};
    event.wd = watch;
    event.mask = mask;
    event.len = static_cast<std::uint32_t>(padded);
    std::string bytes(offsetof(inotify_event, name), '\0');
    std::memcpy(bytes.data(), &event, bytes.size());
    return bytes + name + std::string(padded - name.size(), '\0');
}

Records read(std::string_view bytes)
{
    Records records;
    readFileEventRecords(bytes, [&](const FileEventRecord& one) {
        records.emplace_back(one.watch, one.mask, std::string(one.name));
    });
    return records;
}

}  // namespace

TEST(FileEventRecords, everyRecordIsReadWithItsNameByteForByte)
{
    const std::string bytes = record(1, IN_CREATE | IN_ISDIR, "folder", 16)
                              + record(2, IN_MODIFY, std::string(255, '\xff'), 256)
                              + record(3, IN_DELETE_SELF, "", 0) + record(-1, IN_Q_OVERFLOW, "", 0);
    EXPECT_EQ(read(bytes), (Records{{1, IN_CREATE | IN_ISDIR, "folder"},
                                    {2, IN_MODIFY, std::string(255, '\xff')},
                                    {3, IN_DELETE_SELF, ""},
                                    {-1, IN_Q_OVERFLOW, ""}}));
}

TEST(FileEventRecords, noBytesAreNoRecords)
{
    EXPECT_TRUE(read("").empty());
}

TEST(FileEventRecords, bytesThatEndWithinARecordEndTheReadingThere)
{
    const std::string whole = record(1, IN_CREATE, "a", 16);
    const std::string bytes = whole + record(2, IN_CREATE, "b", 16);
    for (std::size_t length = whole.size(); length < bytes.size(); ++length) {
        EXPECT_EQ(read(std::string_view(bytes).substr(0, length)), (Records{{1, IN_CREATE, "a"}}));
    }
}

TEST(FileEventRecords, bytesOfAnyKindAreReadWithinTheirBounds)
{
    std::mt19937 random(20261121);
    for (int round = 0; round < 2'000; ++round) {
        std::string bytes(random() % 200, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() % 4 == 0 ? random() % 256 : 0);
        }
        std::size_t names = 0;
        readFileEventRecords(bytes,
                             [&](const FileEventRecord& one) { names += 16 + one.name.size(); });
        EXPECT_LE(names, bytes.size());
    }
}

}  // namespace gruk
