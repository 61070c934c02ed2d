#include "core/actions/stash_journal.h"

#include <string>

#include <gtest/gtest.h>

namespace gruk {

namespace {

StashJournalFile journal()
{
    return {
        FileURL::directory("/home/a/Desktop/Desktop Hoard \xE2\x80\x94 15 Nov 2026"),
        {{FileURL("/home/a/Desktop/x.png"), FileURL("/home/a/Desktop/H/x.png")},
         {FileURL::directory("/home/a/Desktop/dir"), FileURL::directory("/home/a/Desktop/H/dir")}},
        Date::fromSecondsSince2001(816'393'600.25)};
}

TEST(StashJournal, comesBackAsItWasWritten)
{
    EXPECT_EQ(decodedStashJournal(encodedStashJournal(journal())), journal());
}

TEST(StashJournal, isOneObjectWithPlacesAsFileURLTexts)
{
    EXPECT_EQ(
        encodedStashJournal({FileURL::directory("/a b"),
                             {{FileURL("/a b/\xFF"), FileURL("/h/100%")}},
                             Date::fromSecondsSince2001(2.5)}),
        R"({"hoardFolder":"file:\/\/\/a%20b\/","items":[{"originalURL":)"
        R"("file:\/\/\/a%20b\/%FF","stashedURL":"file:\/\/\/h\/100%25"}],"createdAt":2.5E0})");
}

TEST(StashJournal, namesOfAnyBytesComeBackToTheSameBytes)
{
    std::string name;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            name += static_cast<char>(byte);
        }
    }
    StashJournalFile strange = journal();
    strange.items = {{FileURL("/a/" + name), FileURL("/b/" + name)}};
    const auto read = decodedStashJournal(encodedStashJournal(strange));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, strange);
}

TEST(StashJournal, anythingElseIsNoJournal)
{
    for (const char* text :
         {"", "[]", "{}", "null", "{\"hoardFolder\":\"file:///a/\",\"items\":[]}",
          "{\"hoardFolder\":\"/a/\",\"items\":[],\"createdAt\":1}",
          "{\"hoardFolder\":\"file:///a/\",\"items\":{},\"createdAt\":1}",
          "{\"hoardFolder\":\"file:///a/\",\"items\":[1],\"createdAt\":1}",
          "{\"hoardFolder\":\"file:///a/\",\"items\":[{\"originalURL\":\"file:///a\"}],"
          "\"createdAt\":1}",
          "{\"hoardFolder\":\"file:///a/\",\"items\":[],\"createdAt\":\"1\"}",
          "{\"hoardFolder\":\"file:///a/\",\"items\":[],\"createdAt\":1} x"}) {
        EXPECT_FALSE(decodedStashJournal(text)) << text;
    }
    EXPECT_TRUE(
        decodedStashJournal("{\"createdAt\":1,\"items\":[],\"hoardFolder\":\"file:///a/\"}"));
}

}  // namespace

}  // namespace gruk
