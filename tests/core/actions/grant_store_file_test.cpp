#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "core/actions/grant_store.h"
#include "tests/core/actions/fake_bookmarks.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

namespace json = boost::json;

class GrantStoreFileTest : public testing::Test {
protected:
    GrantStore store() { return GrantStore(FileURL(folder.path("grants.json")), fake.calls()); }
    std::vector<Grant> read(std::string_view content)
    {
        folder.fileWith("grants.json", content);
        return store().grants();
    }

    test::TemporaryDirectory folder;
    test::FakeBookmarks fake;
};

/// One grant as the file has it, with `member` in the place of the member of that name.
std::string grantWith(std::string_view name = "", std::string_view member = "")
{
    const std::pair<std::string_view, std::string_view> members[] = {
        {"id", R"("id":"6D25A6BF-8A0A-4C7E-9C0F-1B5B4A5D0E01")"},
        {"path", R"("path":"\/home\/gruk")"},
        {"bookmark", R"("bookmark":"AP8=")"},
        {"dateGranted", R"("dateGranted":817000000.25)"},
    };
    std::string text;
    for (const auto& [key, whole] : members) {
        const std::string_view chosen = key == name ? member : whole;
        text += (text.empty() || chosen.empty() ? "" : ",") + std::string(chosen);
    }
    return "{" + text + "}";
}

}  // namespace

TEST_F(GrantStoreFileTest, theFileIsOneArrayOfGrantsWithTheNamedKeys)
{
    GrantStore grants = store();
    const Grant grant = grants.addGrant(FileURL("/home/gruk/\"x\""));
    const std::string content = folder.read("grants.json");
    const json::value root = json::parse(content);
    ASSERT_EQ(root.as_array().size(), 1U);
    const json::object& object = root.as_array()[0].as_object();
    EXPECT_EQ(object.size(), 4U);
    EXPECT_EQ(object.at("id").as_string(), grant.id.text());
    EXPECT_EQ(object.at("path").as_string(), "/home/gruk/\"x\"");
    EXPECT_EQ(object.at("bookmark").as_string(), "/wAxOi9ob21lL2dydWsvIngi");
    EXPECT_EQ(object.at("dateGranted").to_number<double>(), grant.dateGranted.secondsSince2001());
    EXPECT_NE(content.find(R"("path":"\/home\/gruk\/\"x\"")"), std::string::npos) << content;
    EXPECT_EQ(content.find('\n'), std::string::npos);
}

TEST_F(GrantStoreFileTest, whatWasAddedIsThereAfterARestartFieldByField)
{
    GrantStore grants = store();
    const Date before = Date::now();
    for (int i = 0; i < 40; ++i) {
        grants.addGrant(FileURL("/realm " + std::to_string(i)));
    }
    EXPECT_EQ(store().grants(), grants.grants());
    EXPECT_GE(grants.grants().front().dateGranted.secondsSince1970,
              before.secondsSince1970 - 0.001);
    EXPECT_LE(grants.grants().back().dateGranted.secondsSince1970,
              Date::now().secondsSince1970 + 0.001);
}

TEST_F(GrantStoreFileTest, pathsThatAreNotTextComeBackByteForByte)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/a\xff\xfe/b\x80"));
    grants.addGrant(FileURL("/\u00fcber/\xe2\x82"));
    ASSERT_EQ(store().grants(), grants.grants());
    EXPECT_EQ(store().grants()[0].path, "/a\xff\xfe/b\x80");
    EXPECT_NE(folder.read("grants.json").find(R"(\/a\u0000ff\u0000fe\/b\u000080)"),
              std::string::npos);
}

TEST_F(GrantStoreFileTest, aSlashIsReadEscapedOrNot)
{
    for (const char* path : {R"("path":"/home/gruk")", R"("path":"\/home\/gruk")"}) {
        const auto grants = read("[" + grantWith("path", path) + "]");
        ASSERT_EQ(grants.size(), 1U);
        EXPECT_EQ(grants[0].path, "/home/gruk");
        EXPECT_EQ(grants[0].bookmark, std::string("\0\xff", 2));
        EXPECT_EQ(grants[0].dateGranted, Date::fromSecondsSince2001(817'000'000.25));
    }
}

TEST_F(GrantStoreFileTest, aDateIsANumberOfAnyForm)
{
    for (const auto& [text, seconds] :
         {std::pair{"817000000", 817e6}, {"8.17E8", 817e6}, {"-1.5", -1.5}, {"0", 0.0}}) {
        const auto grants =
            read("[" + grantWith("dateGranted", std::string("\"dateGranted\":") + text) + "]");
        ASSERT_EQ(grants.size(), 1U) << text;
        EXPECT_EQ(grants[0].dateGranted.secondsSince2001(), seconds);
    }
}

TEST_F(GrantStoreFileTest, furtherMembersAreNoMatter)
{
    EXPECT_EQ(read("[" + grantWith("path", R"("path":"/a","colour":{"x":[1]})") + "]").size(), 1U);
}

TEST_F(GrantStoreFileTest, anythingThatIsOffGivesAnEmptyList)
{
    const std::string good = grantWith();
    const std::string contents[] = {
        "",
        " ",
        "{}",
        "null",
        "[1]",
        "[null]",
        "[[]]",
        good,
        "[" + good,
        "[" + good + "]]",
        "[" + good + ",]",
        "[" + good + "] x",
        "[" + good + ",{}]",
        "[" + good + ",null]",
        "{\"grants\":[" + good + "]}",
        "[" + good + "]\xff",
        "[" + grantWith("id", R"("id":"6d25a6bf")") + "]",
        "[" + grantWith("id", R"("id":"6D25A6BF8A0A4C7E9C0F1B5B4A5D0E01")") + "]",
        "[" + grantWith("path", R"("path":"/a\u0000")") + "]",
        "[" + grantWith("path", R"("path":"/a\u00007f")") + "]",
        "[" + grantWith("path", "\"path\":\"/a\xff\"") + "]",
        "[" + grantWith("path", R"("path":"/a\ud800")") + "]",
        "[" + grantWith("bookmark", R"("bookmark":"AP8")") + "]",
        "[" + grantWith("bookmark", R"("bookmark":"AP8=\n")") + "]",
        "[" + grantWith("dateGranted", R"("dateGranted":"2026-11-20T00:00:00Z")") + "]",
        "[" + grantWith("dateGranted", R"("dateGranted":1e999)") + "]",
        "[" + grantWith("dateGranted", R"("dateGranted":NaN)") + "]",
    };
    ASSERT_EQ(read("[" + good + "]").size(), 1U);
    for (const std::string& content : contents) {
        EXPECT_TRUE(read(content).empty()) << content;
        EXPECT_EQ(folder.read("grants.json"), content);
    }
}

TEST_F(GrantStoreFileTest, aMissingMemberOrOneOfAnotherTypeGivesAnEmptyList)
{
    for (const std::string name : {"id", "path", "bookmark", "dateGranted"}) {
        EXPECT_TRUE(read("[" + grantWith(name, "") + "]").empty()) << name;
        for (const char* value :
             {"null", "true", "[]", "{}", name == "dateGranted" ? "\"1\"" : "1"}) {
            EXPECT_TRUE(read("[" + grantWith(name, "\"" + name + "\":" + value) + "]").empty())
                << name << " " << value;
        }
    }
}

TEST_F(GrantStoreFileTest, everyTruncationOfAFileGivesAnEmptyList)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/a\xff"));
    grants.addGrant(FileURL("/b"));
    const std::string whole = folder.read("grants.json");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_TRUE(read(whole.substr(0, length)).empty()) << length;
    }
}

}  // namespace gruk
