#include "core/realm/identity_overrides.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <boost/json.hpp>

namespace gruk {

namespace {

namespace json = boost::json;

const RealmIdentity painted{FieldShape::kite, Division::chevron, Tincture::plum,
                            Tincture::sand,   Charge::acorn,     Species::wizard};

/// One shield as the file has it, with `member` in the place of the member of that name.
std::string shieldWith(std::string_view name = "", std::string_view member = "")
{
    const std::pair<std::string_view, std::string_view> members[] = {
        {"shape", R"("shape":"kite")"},     {"division", R"("division":"chevron")"},
        {"primary", R"("primary":"plum")"}, {"secondary", R"("secondary":"sand")"},
        {"charge", R"("charge":"acorn")"},  {"species", R"("species":"wizard")"},
    };
    std::string text;
    for (const auto& [key, whole] : members) {
        const std::string_view chosen = key == name ? member : whole;
        text += (text.empty() || chosen.empty() ? "" : ",") + std::string(chosen);
    }
    return "{" + text + "}";
}

std::string fileWith(const std::string& shield)
{
    return R"({"\/a":)" + shieldWith() + R"(,"\/b":)" + shield + "}";
}

}  // namespace

TEST(IdentityOverrides, theFileIsOneObjectOfShieldsWithTheNamedKeys)
{
    const std::string content = identityOverridesJSON({{"/home/gruk/\"x\"", painted}});
    const json::object root = json::parse(content).as_object();
    ASSERT_EQ(root.size(), 1U);
    const json::object& shield = root.at("/home/gruk/\"x\"").as_object();
    EXPECT_EQ(shield.size(), 6U);
    EXPECT_EQ(shield.at("shape").as_string(), "kite");
    EXPECT_EQ(shield.at("division").as_string(), "chevron");
    EXPECT_EQ(shield.at("primary").as_string(), "plum");
    EXPECT_EQ(shield.at("secondary").as_string(), "sand");
    EXPECT_EQ(shield.at("charge").as_string(), "acorn");
    EXPECT_EQ(shield.at("species").as_string(), "wizard");
    EXPECT_EQ(content, R"({"\/home\/gruk\/\"x\"":)" + shieldWith() + "}");
}

TEST(IdentityOverrides, noOverridesAreAnEmptyObject)
{
    EXPECT_EQ(identityOverridesJSON({}), "{}");
    EXPECT_EQ(identityOverrides("{}"), IdentityOverrides{});
    EXPECT_EQ(identityOverrides(" { } \n"), IdentityOverrides{});
}

TEST(IdentityOverrides, readsEachCaseOfEachVocabulary)
{
    const std::pair<std::string, std::vector<std::string>> vocabularies[] = {
        {"shape", {"round", "kite", "banner", "square"}},
        {"division", {"plain", "halved", "striped", "chevron"}},
        {"primary",
         {"fern", "fernDark", "blue", "yellow", "red", "ink", "terracotta", "teal", "plum", "olive",
          "slate", "sand"}},
        {"charge", {"disk", "lantern", "tree", "mountain", "star", "tusk", "key", "acorn"}},
        {"species", {"gruk", "dragon", "fairy", "human", "wizard"}},
    };
    for (const auto& [key, names] : vocabularies) {
        for (const std::string& name : names) {
            const std::string content =
                R"({"\/a":)" + shieldWith(key, "\"" + key + "\":\"" + name + "\"") + "}";
            const auto read = identityOverrides(content);
            ASSERT_TRUE(read) << content;
            EXPECT_EQ(identityOverridesJSON(*read), content);
        }
    }
}

TEST(IdentityOverrides, aSlashIsReadEscapedOrNot)
{
    const IdentityOverrides expected = {{"/a/b", painted}};
    EXPECT_EQ(identityOverrides(R"({"\/a\/b":)" + shieldWith() + "}"), expected);
    EXPECT_EQ(identityOverrides(R"({"/a/b":)" + shieldWith() + "}"), expected);
}

TEST(IdentityOverrides, pathsThatAreNotTextComeBackByteForByte)
{
    const IdentityOverrides overrides = {
        {"/a\xff\xfe/b\x80", painted}, {"", painted}, {"/\u00fcber/\xe2\x82", painted}};
    const std::string content = identityOverridesJSON(overrides);
    EXPECT_NE(content.find(R"("\/a\u0000ff\u0000fe\/b\u000080")"), std::string::npos) << content;
    EXPECT_EQ(identityOverrides(content), overrides);
}

TEST(IdentityOverrides, twoFormsOfOneNameAreOneKeyThatKeepsItsFirstSpelling)
{
    RealmIdentity other = painted;
    other.species = Species::gruk;
    IdentityOverrides overrides = {{"/e\u0301t\u00e9", painted}};
    overrides.insert_or_assign("/\u00e9te\u0301", other);
    EXPECT_EQ(overrides, (IdentityOverrides{{"/e\u0301t\u00e9", other}}));
    EXPECT_EQ(overrides.begin()->first, "/e\u0301t\u00e9");
    // Neither case nor what merely looks alike is folded.
    EXPECT_FALSE(overrides.contains("/\u00c9t\u00e9"));
    EXPECT_FALSE(overrides.contains("/\u00e9t\u00e9/"));
    IdentityOverrides ligature = {{"/\ufb01", painted}};
    EXPECT_FALSE(ligature.contains("/fi"));
}

TEST(IdentityOverrides, ofAPathThatStandsTwiceTheLastOneCounts)
{
    const std::string other = shieldWith("species", R"("species":"gruk")");
    for (const char* second : {"\\/\u00e9", "\\/e\u0301"}) {
        const auto read = identityOverrides("{\"\\/\u00e9\":" + shieldWith() + ",\"" + second
                                            + "\":" + other + "}");
        ASSERT_TRUE(read);
        ASSERT_EQ(read->size(), 1U);
        EXPECT_EQ(read->begin()->second.species, Species::gruk);
    }
}

TEST(IdentityOverrides, furtherMembersAreNoMatter)
{
    const auto read =
        identityOverrides(fileWith(shieldWith("shape", R"("shape":"kite","motto":["x"])")));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->at("/b"), painted);
}

TEST(IdentityOverrides, oneMemberThatIsOffDiscardsAll)
{
    ASSERT_TRUE(identityOverrides(fileWith(shieldWith())));
    for (const std::string key :
         {"shape", "division", "primary", "secondary", "charge", "species"}) {
        EXPECT_FALSE(identityOverrides(fileWith(shieldWith(key)))) << key;
        for (const char* value :
             {"null", "1", "true", "[]", "{}", "\"\"", "\"Kite\"", "\"gold\""}) {
            const std::string shield = shieldWith(key, "\"" + key + "\":" + value);
            EXPECT_FALSE(identityOverrides(fileWith(shield))) << shield;
        }
    }
}

TEST(IdentityOverrides, aFileOfAnyOtherFormIsNone)
{
    const std::string shield = shieldWith();
    const std::string contents[] = {
        "",
        " ",
        "null",
        "[]",
        "[" + shield + "]",
        "{\"a\":null}",
        "{\"a\":[" + shield + "]}",
        "{\"a\":" + shield,
        "{\"a\":" + shield + "}}",
        "{\"a\":" + shield + ",}",
        "{\"a\":" + shield + "} x",
        "{\"overrides\":{\"a\":" + shield + "}}",
        "{a:" + shield + "}",
        "{\"a\xff\":" + shield + "}",
        "{\"a\\ud800\":" + shield + "}",
        "{\"a\\u0000\":" + shield + "}",
        "{\"a\\u00007f\":" + shield + "}",
        "{\"a\\u0000FF\":" + shield + "}",
    };
    for (const std::string& content : contents) {
        EXPECT_FALSE(identityOverrides(content)) << content;
    }
}

TEST(IdentityOverrides, everyTruncationIsNone)
{
    const std::string whole = identityOverridesJSON({{"/a\xff", painted}, {"/b", painted}});
    ASSERT_TRUE(identityOverrides(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_FALSE(identityOverrides(whole.substr(0, length))) << length;
    }
}

RC_GTEST_PROP(IdentityOverrides, whatIsWrittenIsRead, (const std::vector<std::string>& paths))
{
    IdentityOverrides overrides;
    for (std::string path : paths) {
        std::erase(path, '\0');
        overrides.insert_or_assign(path, RealmIdentity::derive(path));
    }
    const auto read = identityOverrides(identityOverridesJSON(overrides));
    RC_ASSERT(read.has_value());
    RC_ASSERT(std::equal(read->begin(), read->end(), overrides.begin(), overrides.end()));
}

}  // namespace gruk
