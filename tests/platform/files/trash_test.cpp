#include "platform/files/trash.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "platform/files/moves.h"
#include "platform/foundation/errors.h"
#include "tests/support/trash_house.h"

// The Trash at home, on a real disk.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::itemRecord;
using test::stands;
using test::TrashHouse;
using test::treeRecord;

template <typename Call>
FileError errorOf(Call call)
{
    try {
        call();
    } catch (const FileError& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return {std::error_code(), "", ""};
}

/// Trashes the item as the program does, with all conditions.
FileURL trashed(const TrashHouse& house, const FileURL& url)
{
    const ItemFacts facts = itemFacts(url);
    return trashItem(
        url, {house.directory().url(), ItemIdentity{facts.deviceID, facts.inode, facts.type}});
}

std::string infoOf(const TrashHouse& house, const std::string& name)
{
    return house.directory().read("data/Trash/info/" + name + ".trashinfo");
}

TEST(Trash, takesAFileWithAnInfoFileOfWhereItWas)
{
    const TrashHouse house;
    house.directory().fileWith("home/Documents/a b.txt", "content");
    const FileURL url = house.url("home/Documents/a b.txt");
    const std::string before = itemRecord(url.path());

    const std::time_t start = std::time(nullptr);
    const FileURL now = trashed(house, url);

    EXPECT_EQ(now, FileURL(house.trash("files/a b.txt")));
    EXPECT_EQ(itemRecord(now.path()), before);
    EXPECT_FALSE(stands(url.path()));
    const std::string info = infoOf(house, "a b.txt");
    const std::string wanted =
        "[Trash Info]\nPath=" + house.path("home/Documents/a%20b.txt") + "\nDeletionDate=";
    EXPECT_EQ(info.substr(0, wanted.size()), wanted);
    std::tm date{};
    ASSERT_NE(::strptime(info.c_str() + wanted.size(), "%Y-%m-%dT%H:%M:%S", &date), nullptr);
    date.tm_isdst = -1;
    EXPECT_NEAR(static_cast<double>(std::mktime(&date)), static_cast<double>(start), 10.0);
    EXPECT_EQ(info.size(), wanted.size() + std::string("2026-11-21T01:28:28\n").size());
}

TEST(Trash, isMadeForItsOwnerAloneWhereItIsMissing)
{
    const TrashHouse house;
    house.directory().file("a");
    (void)trashed(house, house.url("a"));
    for (const std::string& place :
         {house.path("data"), house.trash(), house.trash("files"), house.trash("info")}) {
        EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all) << place;
    }
    EXPECT_EQ(fs::status(house.trash("info/a.trashinfo")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST(Trash, putsBackExactlyWhatItTookAndForgetsIt)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    house.directory().fileWith("home/folder/inner", "inner");
    house.directory().symbolicLink("home/link", "a");
    house.directory().symbolicLink("home/nowhere", "missing");
    house.directory().symbolicLink("home/loop", "loop");
    ASSERT_EQ(::mkfifo(house.path("home/pipe").c_str(), 0640), 0);
    const auto before = treeRecord(house.path("home"));
    for (const char* name : {"a", "folder", "link", "nowhere", "loop", "pipe"}) {
        const FileURL url = house.url(std::string("home/") + name);
        const FileURL now = trashed(house, url);
        EXPECT_FALSE(stands(url.path()));
        restoreTrashedItem(now, url, {house.directory().url(), std::nullopt});
        EXPECT_EQ(treeRecord(house.path("home")), before) << name;
        EXPECT_TRUE(fs::is_empty(house.trash("files")));
        EXPECT_TRUE(fs::is_empty(house.trash("info")));
    }
    EXPECT_EQ(house.directory().read("data/Trash/directorysizes"), "");
}

TEST(Trash, takesNamesOfAnyBytesAndOfTheGreatestLength)
{
    const TrashHouse house;
    for (const std::string& name :
         {std::string("\xff\xfe \n\x01"), std::string(255, 'n'), std::string(251, 'n') + ".txt",
          std::string("-rf *"), std::string("%41 ?#[=]"), std::string("a.trashinfo")}) {
        house.directory().fileWith("home/" + name, name);
        const FileURL url = house.url("home/" + name);
        const std::string before = itemRecord(url.path());
        const FileURL now = trashed(house, url);
        EXPECT_EQ(itemRecord(now.path()), before);
        EXPECT_TRUE(
            stands(house.trash("info/" + std::string(now.lastPathComponent()) + ".trashinfo")));
        restoreTrashedItem(now, url);
        EXPECT_EQ(itemRecord(url.path()), before);
        EXPECT_TRUE(fs::is_empty(house.trash("info")));
    }
}

TEST(Trash, keepsHundredsOfItemsOfOneName)
{
    const TrashHouse house;
    const FileURL url = house.url("home/a.txt");
    const MoveCalls calls = test::unsynchronizedCalls();
    std::set<std::string> places;
    constexpr int count = 300;
    for (int i = 0; i < count; ++i) {
        house.directory().fileWith("home/a.txt", std::to_string(i));
        places.insert(trashItem(url, {}, calls).path());
    }
    EXPECT_EQ(places.size(), static_cast<std::size_t>(count));
    EXPECT_TRUE(places.contains(house.trash("files/a.txt")));
    EXPECT_TRUE(places.contains(house.trash("files/a.2.txt")));
    std::set<std::string> contents;
    for (const auto& item : fs::directory_iterator(house.trash("files"))) {
        const std::string name = item.path().filename().string();
        contents.insert(house.directory().read("data/Trash/files/" + name));
        EXPECT_TRUE(stands(house.trash("info/" + name + ".trashinfo")));
    }
    EXPECT_EQ(contents.size(), static_cast<std::size_t>(count));
}

TEST(Trash, takesNoNameThatAFileOrAnInfoFileHas)
{
    const TrashHouse house;
    house.directory().fileWith("data/Trash/files/a", "an orphan");
    house.directory().fileWith("data/Trash/info/a.2.trashinfo", "a ghost");
    house.directory().symbolicLink("data/Trash/files/a.3", "nowhere");
    house.directory().symbolicLink("data/Trash/info/a.4.trashinfo", "nowhere");
    auto before = treeRecord(house.trash());
    house.directory().fileWith("a", "content");
    EXPECT_EQ(trashed(house, house.url("a")).path(), house.trash("files/a.5"));
    auto after = treeRecord(house.trash());
    EXPECT_EQ(after.erase("files/a.5") + after.erase("info/a.5.trashinfo"), 2U);
    EXPECT_EQ(after, before);
    EXPECT_EQ(house.directory().read("data/Trash/files/a"), "an orphan");
}

TEST(Trash, twoThatTakeItemsOfOneNameBothEndWell)
{
    const TrashHouse house;
    constexpr int rounds = 200;
    const MoveCalls calls = test::unsynchronizedCalls();
    const auto trashAll = [&](const std::string& folder) {
        for (int i = 0; i < rounds; ++i) {
            const std::string name = "same " + std::to_string(i % 5);
            house.directory().fileWith(folder + "/" + name, folder + std::to_string(i));
            (void)trashItem(house.url(folder + "/" + name), {}, calls);
        }
    };
    std::thread other([&] { trashAll("one"); });
    trashAll("two");
    other.join();
    std::set<std::string> contents;
    for (const auto& item : fs::directory_iterator(house.trash("files"))) {
        const std::string name = item.path().filename().string();
        const std::string content = house.directory().read("data/Trash/files/" + name);
        contents.insert(content);
        EXPECT_NE(infoOf(house, name).find(house.path(content.substr(0, 3))), std::string::npos);
    }
    EXPECT_EQ(contents.size(), 2U * rounds);
}

TEST(Trash, refusesWhatIsGoneOrIsAnotherItemNow)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "saved anew");
    const auto before = treeRecord(house.directory().path());
    EXPECT_EQ(errorOf([&] { (void)trashItem(house.url("home/b")); }).code(),
              std::errc::no_such_file_or_directory);
    ItemFacts facts = itemFacts(house.url("home/a"));
    const ItemIdentity former{facts.deviceID, facts.inode + 1, facts.type};
    EXPECT_EQ(errorOf([&] {
                  (void)trashItem(house.url("home/a"), {std::nullopt, former});
              }).code(),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(treeRecord(house.directory().path()), before) << "not even a Trash was made";
}

TEST(Trash, refusesWhatIsInItAndWhatItIsIn)
{
    const TrashHouse house;
    house.directory().fileWith("data/Trash/files/folder/inner", "content");
    house.directory().fileWith("data/Trash/info/folder.trashinfo", "[Trash Info]\nPath=/x\n");
    house.directory().symbolicLink("way", "data/Trash/files");
    const auto before = treeRecord(house.directory().path());
    for (const char* place :
         {"data", "data/Trash", "data/Trash/files", "data/Trash/info", "data/Trash/files/folder",
          "data/Trash/files/folder/inner", "data/Trash/info/folder.trashinfo", "way/folder"}) {
        const FileError error = errorOf([&] { (void)trashItem(house.url(place)); });
        EXPECT_EQ(error.code(), std::errc::invalid_argument) << place;
        EXPECT_NE(describe(error).find("Trash"), std::string::npos) << describe(error);
    }
    EXPECT_EQ(treeRecord(house.directory().path()), before);
    EXPECT_EQ(errorOf([&] { (void)trashItem(FileURL()); }).code(), std::errc::invalid_argument);
}

TEST(Trash, isUsedBehindALinkOfTheUsers)
{
    const TrashHouse house;
    house.directory().folder("large/Bin");
    house.directory().symbolicLink("data/Trash", house.path("large/Bin"));
    house.directory().fileWith("data/a", "content");
    const MoveConditions conditions{house.directory().url(), std::nullopt};
    const FileURL now = trashItem(house.url("data/a"), conditions);
    EXPECT_EQ(house.directory().read("large/Bin/files/a"), "content");
    restoreTrashedItem(now, house.url("data/a"), conditions);
    EXPECT_EQ(house.directory().read("data/a"), "content");
    EXPECT_TRUE(fs::is_empty(house.path("large/Bin/info")));
}

TEST(Trash, thatCannotBeUsedRefusesWithTheItemWhereItWas)
{
    for (const char* obstacle : {"data", "data/Trash", "data/Trash/files", "data/Trash/info"}) {
        const TrashHouse house;
        house.directory().fileWith(obstacle, "a file");
        house.directory().fileWith("home/a", "content");
        const std::string before = itemRecord(house.path("home/a"));
        EXPECT_EQ(errorOf([&] { (void)trashItem(house.url("home/a")); }).code(),
                  std::errc::not_a_directory);
        EXPECT_EQ(itemRecord(house.path("home/a")), before);
    }
}

TEST(Trash, takesAnItemFarBeyondWhatAPathMayBe)
{
    const TrashHouse house;
    FileURL deep = house.url("deep");
    makeDirectory(deep);
    for (int i = 0; i < 40; ++i) {
        deep = deep.appending(std::string(200, 'd'), FileURL::Names::directory);
        makeDirectory(deep);
    }
    house.directory().fileWith("a", "content");
    const FileURL place = deep.appending("a");
    moveItem(house.url("a"), place);
    const FileURL now = trashed(house, place);
    EXPECT_EQ(house.directory().read("data/Trash/files/a"), "content");
    EXPECT_NE(infoOf(house, "a").find("Path=" + place.path() + "\n"), std::string::npos);
    restoreTrashedItem(now, place, {house.directory().url(), std::nullopt});
    EXPECT_TRUE(itemStands(place));
    EXPECT_TRUE(fs::is_empty(house.trash("info")));
}

TEST(Trash, ofAnotherOwnersFileInAStickyFolderIsRefused)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs files of two owners, which only root can make";
    }
    const test::TemporaryDirectory directory;
    directory.fileWith("shared/theirs", "content");
    fs::permissions(directory.path("shared"), fs::perms::all | fs::perms::sticky_bit);
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& shared) {
            const test::EnvironmentVariable data("XDG_DATA_HOME", shared.path("data"));
            bool isRefused = false;
            try {
                (void)trashItem(FileURL(shared.path("shared/theirs")));
            } catch (const FileError& error) {
                isRefused = meaning(error) == ErrorMeaning::accessRefused;
            }
            return isRefused && shared.read("shared/theirs") == "content"
                   && fs::is_empty(shared.path("data/Trash/files"))
                   && fs::is_empty(shared.path("data/Trash/info"));
        },
        directory));
}

TEST(Trash, ofAnotherItemThatIsPutThereInTheMomentOfTheMoveIsUndone)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "reviewed");
    house.directory().fileWith("home/other", "saved anew");
    const ItemFacts facts = itemFacts(house.url("home/a"));
    MoveCalls calls;
    calls.moveWithoutReplacing =
        [&, live = calls.moveWithoutReplacing](int fromDirectory, const char* from, int toDirectory,
                                               const char* to) {
            if (stands(house.path("home/other"))) {
                fs::rename(house.path("home/other"), house.path("home/a"));
            }
            return live(fromDirectory, from, toDirectory, to);
        };
    const MoveConditions conditions{house.directory().url(),
                                    ItemIdentity{facts.deviceID, facts.inode, facts.type}};
    EXPECT_EQ(errorOf([&] { (void)trashItem(house.url("home/a"), conditions, calls); }).code(),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(house.directory().read("home/a"), "saved anew");
    EXPECT_TRUE(fs::is_empty(house.trash("files")));
    EXPECT_TRUE(fs::is_empty(house.trash("info")));
}

TEST(Trash, keepsTheInfoFileOfAnotherItemThatCannotGoBack)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "saved anew");
    const ItemFacts facts = itemFacts(house.url("home/a"));
    house.directory().fileWith("home/new", "saved once more");
    MoveCalls calls;
    bool isMoved = false;
    calls.facts = [&, live = calls.facts](int folder, const char* name, LastLink link,
                                          PlaceFacts& found) {
        const int result = live(folder, name, link, found);
        // What the last look finds is another item, and the old place is taken.
        found.item.inode += isMoved ? 1 : 0;
        return result;
    };
    calls.moveWithoutReplacing =
        [&, live = calls.moveWithoutReplacing](int fromDirectory, const char* from, int toDirectory,
                                               const char* to) {
            const int result = live(fromDirectory, from, toDirectory, to);
            if (!std::exchange(isMoved, true)) {
                fs::rename(house.path("home/new"), house.path("home/a"));
            }
            return result;
        };
    const MoveConditions conditions{house.directory().url(),
                                    ItemIdentity{facts.deviceID, facts.inode, facts.type}};
    const FileError error =
        errorOf([&] { (void)trashItem(house.url("home/a"), conditions, calls); });
    EXPECT_NE(describe(error).find(house.trash("files/a")), std::string::npos) << describe(error);
    EXPECT_EQ(house.directory().read("data/Trash/files/a"), "saved anew");
    EXPECT_EQ(house.directory().read("home/a"), "saved once more");
    EXPECT_NE(infoOf(house, "a").find("Path=" + house.path("home/a")), std::string::npos);
}

TEST(Trash, removesNoInfoFileButItsOwnWhenTheMoveFails)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    MoveCalls calls;
    calls.moveWithoutReplacing = [&](int, const char*, int, const char*) {
        fs::remove(house.trash("info/a.trashinfo"));
        house.directory().fileWith("data/Trash/new", "somebody else's");
        fs::rename(house.trash("new"), house.trash("info/a.trashinfo"));
        return -EIO;
    };
    EXPECT_EQ(errorOf([&] { (void)trashItem(house.url("home/a"), {}, calls); }).code(),
              std::errc::io_error);
    EXPECT_EQ(infoOf(house, "a"), "somebody else's");
    EXPECT_EQ(house.directory().read("home/a"), "content");
}

}  // namespace

}  // namespace gruk
