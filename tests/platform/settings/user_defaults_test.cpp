#include "platform/settings/user_defaults.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using namespace std::string_literals;
using test::TemporaryDirectory;

FileURL fileIn(const TemporaryDirectory& disk)
{
    return FileURL(disk.path("Gruk/settings.json"));
}

std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(folder)) {
        names.push_back(item.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

mode_t modeOf(const std::string& path)
{
    struct stat facts {};
    EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
    return facts.st_mode & 07777U;
}

}  // namespace

TEST(UserDefaults, everythingIsAbsentAtFirstAndNothingIsWrittenByReading)
{
    const TemporaryDirectory disk;
    const UserDefaults settings(fileIn(disk));
    EXPECT_EQ(settings.boolean("a"), std::nullopt);
    EXPECT_EQ(settings.text("a"), std::nullopt);
    EXPECT_EQ(settings.data("a"), std::nullopt);
    EXPECT_EQ(settings.textDictionary("a"), std::nullopt);
    EXPECT_TRUE(namesIn(disk.path()).empty());
}

TEST(UserDefaults, valuesComeBackAsWhatTheyWereInAnotherObject)
{
    const TemporaryDirectory disk;
    const std::string bytes = "[{}]\0\xff\n"s;
    const TextDictionary folders = {{"image", "Bilder"}, {"pdf", ""}, {"\xfe", "\xff"}};
    {
        UserDefaults settings(fileIn(disk));
        settings.setBoolean("yes", true);
        settings.setBoolean("no", false);
        settings.setText("cadence.X", "standGuard");
        settings.setText("empty", "");
        settings.setData("realmRules./a/b", bytes);
        settings.setData("no bytes", "");
        settings.setTextDictionary("organise.overrides./\xff", folders);
        settings.setTextDictionary("no folders", {});
    }
    const UserDefaults settings(fileIn(disk));
    EXPECT_EQ(settings.boolean("yes"), true);
    EXPECT_EQ(settings.boolean("no"), false);
    EXPECT_EQ(settings.text("cadence.X"), "standGuard");
    EXPECT_EQ(settings.text("empty"), "");
    EXPECT_EQ(settings.data("realmRules./a/b"), bytes);
    EXPECT_EQ(settings.data("no bytes"), "");
    EXPECT_EQ(settings.textDictionary("organise.overrides./\xff"), folders);
    EXPECT_EQ(settings.textDictionary("no folders"), TextDictionary());
    EXPECT_EQ(settings.textDictionary("organise.overrides./\xfe"), std::nullopt);
}

TEST(UserDefaults, aKeyOfAnotherTypeReadsAsAbsent)
{
    const TemporaryDirectory disk;
    UserDefaults settings(fileIn(disk));
    settings.setBoolean("boolean", true);
    settings.setText("text", "true");
    settings.setData("data", "true");
    settings.setTextDictionary("dictionary", {{"a", "b"}});
    for (const std::string key : {"boolean", "text", "data", "dictionary"}) {
        EXPECT_EQ(settings.boolean(key).has_value(), key == "boolean") << key;
        EXPECT_EQ(settings.text(key).has_value(), key == "text") << key;
        EXPECT_EQ(settings.data(key).has_value(), key == "data") << key;
        EXPECT_EQ(settings.textDictionary(key).has_value(), key == "dictionary") << key;
    }
    settings.setText("boolean", "now a text");
    EXPECT_EQ(settings.boolean("boolean"), std::nullopt);
    EXPECT_EQ(settings.text("boolean"), "now a text");
}

TEST(UserDefaults, aDictionaryWithOneValueThatIsNoTextReadsAsAbsentAndStays)
{
    const TemporaryDirectory disk;
    (void)disk.fileWith("Gruk/settings.json", R"({"d": {"image": "Bilder", "pdf": 1}})");
    UserDefaults settings(fileIn(disk));
    EXPECT_EQ(settings.textDictionary("d"), std::nullopt);
    settings.setBoolean("other", true);
    EXPECT_NE(disk.read("Gruk/settings.json").find(R"({"image": "Bilder", "pdf": 1})"),
              std::string::npos);
}

TEST(UserDefaults, whatALaterProgramHasStoredSurvivesByteForByte)
{
    const TemporaryDirectory disk;
    (void)disk.fileWith("Gruk/settings.json",
                        R"({"whole":9007199254740993,"huge":123456789012345678901234567890,)"
                        R"("part":0.1000000000000000055511151231257827,"none":null,"\u0000zz":1,)"
                        R"("list":[1, 2.50, {"$later":[]}]})");
    UserDefaults settings(fileIn(disk));
    settings.setText("ours", "x");
    const std::string text = disk.read("Gruk/settings.json");
    for (const char* value :
         {"\"whole\": 9007199254740993", "\"huge\": 123456789012345678901234567890",
          "\"part\": 0.1000000000000000055511151231257827", "\"none\": null", R"("\u0000zz": 1)",
          R"("list": [1, 2.50, {"$later":[]}])", R"("ours": "x")"}) {
        EXPECT_NE(text.find(value), std::string::npos) << value << " in " << text;
    }
}

TEST(UserDefaults, aRemovedKeyIsAbsentAndTheOthersStay)
{
    const TemporaryDirectory disk;
    UserDefaults settings(fileIn(disk));
    settings.setText("a", "1");
    settings.setText("b", "2");
    settings.remove("a");
    settings.remove("never there");
    EXPECT_EQ(settings.text("a"), std::nullopt);
    EXPECT_EQ(UserDefaults(fileIn(disk)).text("a"), std::nullopt);
    EXPECT_EQ(UserDefaults(fileIn(disk)).text("b"), "2");
}

TEST(UserDefaults, twoObjectsSeeEachOthersWritesAndLoseNothing)
{
    const TemporaryDirectory disk;
    UserDefaults first(fileIn(disk));
    UserDefaults second(fileIn(disk));
    EXPECT_EQ(second.text("a"), std::nullopt);
    for (int i = 0; i < 50; ++i) {
        const std::string value = std::to_string(i % 7);  // the same length again and again
        first.setText("a", value);
        ASSERT_EQ(second.text("a"), value);
        second.setText("b", value);
        ASSERT_EQ(first.text("b"), value);
        ASSERT_EQ(first.text("a"), value);
    }
    std::filesystem::remove(fileIn(disk).path());
    EXPECT_EQ(first.text("a"), std::nullopt);
}

TEST(UserDefaults, aFileThatAnEditorHasRewrittenInPlaceIsReadAgain)
{
    const TemporaryDirectory disk;
    const UserDefaults settings(fileIn(disk));
    (void)disk.fileWith("Gruk/settings.json", R"({"a":"x"})");
    EXPECT_EQ(settings.text("a"), "x");
    (void)disk.fileWith("Gruk/settings.json", R"({ "a": "longer" })");
    EXPECT_EQ(settings.text("a"), "longer");
}

TEST(UserDefaults, folderAndFileAreForTheUserAlone)
{
    const TemporaryDirectory disk;
    const FileURL file(disk.path("config/Gruk/settings.json"));
    const mode_t former = ::umask(0);
    UserDefaults(file).setBoolean("a", true);
    ::umask(former);
    EXPECT_EQ(modeOf(disk.path("config")), 0700U);
    EXPECT_EQ(modeOf(disk.path("config/Gruk")), 0700U);
    EXPECT_EQ(modeOf(file.path()), 0600U);
    EXPECT_EQ(namesIn(disk.path("config/Gruk")),
              (std::vector<std::string>{"settings.json", "settings.json.lock"}));
}

TEST(UserDefaults, theStandardFileLiesInTheFolderForConfigurations)
{
    const TemporaryDirectory disk;
    const test::EnvironmentVariable config("XDG_CONFIG_HOME", disk.path("config"));
    EXPECT_EQ(UserDefaults::standardFile().path(), disk.path("config/Gruk/settings.json"));
    UserDefaults().setBoolean("a", true);
    EXPECT_EQ(disk.read("config/Gruk/settings.json"), "{\n    \"a\": true\n}\n");
}

TEST(UserDefaults, aValueThatIsThereAlreadyIsNotWrittenAgain)
{
    const TemporaryDirectory disk;
    UserDefaults settings(fileIn(disk));
    settings.setText("a", "x");
    const FileStamp before = FileReader::open(fileIn(disk))->stamp();
    settings.setText("a", "x");
    settings.remove("b");
    EXPECT_EQ(FileReader::open(fileIn(disk))->stamp(), before);
}

TEST(UserDefaults, aDamagedFileReadsAsEmptyAndIsKeptAsideBeforeTheFirstWrite)
{
    const std::string damaged[] = {"",     "{",        "null",   "[]",
                                   "\xff", R"({"a":)", "{}{}x"s, std::string(100'000, '\0')};
    for (const std::string& content : damaged) {
        const TemporaryDirectory disk;
        (void)disk.fileWith("Gruk/settings.json", content);
        UserDefaults settings(fileIn(disk));
        EXPECT_EQ(settings.boolean("a"), std::nullopt);
        settings.remove("a");
        EXPECT_EQ(disk.read("Gruk/settings.json"), content) << "nothing to write yet";
        settings.setBoolean("a", true);
        EXPECT_EQ(disk.read("Gruk/settings.json.damaged"), content);
        EXPECT_EQ(UserDefaults(fileIn(disk)).boolean("a"), true);
        settings.setBoolean("b", true);
        EXPECT_EQ(namesIn(disk.path("Gruk")).size(), 3U) << "moved aside once only";
    }
}

TEST(UserDefaults, eachDamagedFileHasANameOfItsOwn)
{
    const TemporaryDirectory disk;
    for (const std::string content : {"first", "second", "third"}) {
        (void)disk.fileWith("Gruk/settings.json", content);
        UserDefaults(fileIn(disk)).setText("now", content);
    }
    EXPECT_EQ(disk.read("Gruk/settings.json.damaged"), "first");
    EXPECT_EQ(disk.read("Gruk/settings.json.damaged.2"), "second");
    EXPECT_EQ(disk.read("Gruk/settings.json.damaged.3"), "third");
}

TEST(UserDefaults, aFileFarTooLongIsDamagedAndNotTakenIntoMemory)
{
    const TemporaryDirectory disk;
    (void)disk.fileWith("Gruk/settings.json", "{}");
    std::filesystem::resize_file(fileIn(disk).path(), std::uintmax_t{1} << 40);
    UserDefaults settings(fileIn(disk));
    EXPECT_EQ(settings.boolean("a"), std::nullopt);
    settings.setBoolean("a", true);
    EXPECT_EQ(std::filesystem::file_size(disk.path("Gruk/settings.json.damaged")),
              std::uintmax_t{1} << 40);
}

TEST(UserDefaults, aLinkToAFileElsewhereStaysALink)
{
    const TemporaryDirectory disk;
    (void)disk.fileWith("dotfiles/gruk.json", R"({"a":true})");
    (void)disk.symbolicLink("Gruk/settings.json", "../dotfiles/gruk.json");
    UserDefaults settings(fileIn(disk));
    EXPECT_EQ(settings.boolean("a"), true);
    settings.setBoolean("b", true);
    EXPECT_TRUE(std::filesystem::is_symlink(fileIn(disk).path()));
    EXPECT_EQ(disk.read("dotfiles/gruk.json"), "{\n    \"a\": true,\n    \"b\": true\n}\n");
}

TEST(UserDefaults, aDamagedFileBehindALinkIsLeftWhereItIs)
{
    const TemporaryDirectory disk;
    (void)disk.fileWith("dotfiles/gruk.json", "damaged");
    (void)disk.symbolicLink("Gruk/settings.json", "../dotfiles/gruk.json");
    UserDefaults(fileIn(disk)).setBoolean("b", true);
    EXPECT_EQ(disk.read("dotfiles/gruk.json"), "damaged");
    EXPECT_EQ(UserDefaults(fileIn(disk)).boolean("b"), true);
}

TEST(UserDefaults, aNullWhereNoneMayBeIsRefusedAndNothingChanges)
{
    const TemporaryDirectory disk;
    UserDefaults settings(fileIn(disk));
    const auto refuses = [](const auto& set) {
        try {
            set();
            return false;
        } catch (const FileError& error) {
            return error.code() == std::errc::invalid_argument;
        }
    };
    EXPECT_TRUE(refuses([&] { settings.setText("a\0b"s, "x"); }));
    EXPECT_TRUE(refuses([&] { settings.setText("a", "x\0"s); }));
    EXPECT_TRUE(refuses([&] { settings.setTextDictionary("a", {{"\0"s, "x"}}); }));
    EXPECT_TRUE(refuses([&] { settings.setTextDictionary("a", {{"x", "\0"s}}); }));
    EXPECT_EQ(settings.text("a\0b"s), std::nullopt);
    EXPECT_EQ(settings.text("a"), std::nullopt);
    EXPECT_TRUE(namesIn(disk.path()).empty());
}

}  // namespace gruk
