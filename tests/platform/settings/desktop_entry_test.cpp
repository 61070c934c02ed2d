#include "platform/linux/desktop_entry.h"

#include <string>

#include <gtest/gtest.h>

namespace gruk {

namespace {

using namespace std::string_literals;

constexpr const char* example = "# Made by hand\n"
                                "\n"
                                "[Desktop Entry]\n"
                                "Type=Application\n"
                                "Name = Gruk \n"
                                "Name[de]=Gruk, der Wächter\n"
                                "X-Delay=30\n"
                                "\n"
                                "# the end of it\n"
                                "\n"
                                "[Desktop Action map]\n"
                                "Name=Map\n"
                                "Exec=gruk --map\n";

DesktopEntry parsed(std::string_view text)
{
    const auto entry = DesktopEntry::parse(text);
    EXPECT_TRUE(entry);
    return entry.value_or(DesktopEntry());
}

}  // namespace

TEST(DesktopEntry, valuesAreThoseOfItsOwnGroup)
{
    const DesktopEntry entry = parsed(example);
    EXPECT_EQ(entry.text("Name"), "Gruk");
    EXPECT_EQ(entry.text("Name[de]"), "Gruk, der Wächter");
    EXPECT_EQ(entry.text("X-Delay"), "30");
    EXPECT_EQ(entry.text("Exec"), std::nullopt);
    EXPECT_EQ(entry.text("Delay"), std::nullopt);
}

TEST(DesktopEntry, whatIsNotChangedIsWrittenBackByteForByte)
{
    EXPECT_EQ(parsed(example).fileText(), example);
    DesktopEntry entry = parsed(example);
    entry.setText("Exec", "gruk");
    entry.setText("Name", "G");
    entry.setBoolean("Hidden", true);
    entry.remove("X-Delay");
    EXPECT_EQ(entry.fileText(), "# Made by hand\n"
                                "\n"
                                "[Desktop Entry]\n"
                                "Type=Application\n"
                                "Name=G\n"
                                "Name[de]=Gruk, der Wächter\n"
                                "Exec=gruk\n"
                                "Hidden=true\n"
                                "\n"
                                "# the end of it\n"
                                "\n"
                                "[Desktop Action map]\n"
                                "Name=Map\n"
                                "Exec=gruk --map\n");
}

TEST(DesktopEntry, aNewOneHasItsGroupAndNothingElse)
{
    DesktopEntry entry;
    EXPECT_EQ(entry.fileText(), "[Desktop Entry]\n");
    entry.setText("Name", "Gruk");
    entry.setText("Type", "Application");
    EXPECT_EQ(entry.fileText(), "[Desktop Entry]\nName=Gruk\nType=Application\n");
    entry.remove("Name");
    entry.remove("Type");
    EXPECT_EQ(entry.fileText(), "[Desktop Entry]\n");
}

TEST(DesktopEntry, ofAKeyThatStandsTwiceTheLastCountsAndOneIsWritten)
{
    DesktopEntry entry = parsed("[Desktop Entry]\nA=1\nB=2\nA=3");
    EXPECT_EQ(entry.text("A"), "3");
    entry.setText("A", "4");
    EXPECT_EQ(entry.fileText(), "[Desktop Entry]\nA=4\nB=2\n");
}

TEST(DesktopEntry, booleansAreTrueOrFalseAndNothingElse)
{
    const DesktopEntry entry =
        parsed("[Desktop Entry]\r\nA=true\r\nB = false\r\nC=TRUE\nD=1\nE=\n");
    EXPECT_EQ(entry.boolean("A"), true);
    EXPECT_EQ(entry.boolean("B"), false);
    for (const char* key : {"C", "D", "E", "F"}) {
        EXPECT_EQ(entry.boolean(key), std::nullopt) << key;
    }
}

TEST(DesktopEntry, escapesAreResolvedAndWritten)
{
    const DesktopEntry entry =
        parsed("[Desktop Entry]\nA=\\sa\\tb\\nc\\\\d\\re\\s\nB=\\x\\\nC=a=b\n");
    EXPECT_EQ(entry.text("A"), " a\tb\nc\\d\re ");
    EXPECT_EQ(entry.text("B"), "\\x\\");
    EXPECT_EQ(entry.text("C"), "a=b");
    for (const std::string value :
         {" a\tb\nc\\d\re ", "\\s", "", " ", "  ", "a  b", "\\", "#", "[x]"}) {
        DesktopEntry written;
        written.setText("A", value);
        EXPECT_EQ(parsed(written.fileText()).text("A"), value) << written.fileText();
    }
}

TEST(DesktopEntry, whatADesktopWouldRefuseIsNone)
{
    const std::string refused[] = {
        "",
        "\n# only a comment\n",
        "Name=a\n[Desktop Entry]\n",
        "[Other]\n[Desktop Entry]\n",
        "[Desktop Entry",
        "[Desktop Entry]x\n",
        "[desktop entry]\n",
        "[Desktop Entry]\nno entry\n",
        "[Desktop Entry]\n=value\n",
        "[Desktop Entry]\nA b=value\n",
        "[Desktop Entry]\nA[de=value\n",
        "[Desktop Entry]\n[]\n",
        "[Desktop Entry]\n[a]b]\n",
        "[Desktop Entry]\nName=\xff\n",
        "[Desktop Entry]\nName=\0\n"s,
        "\xef\xbb\xbf[Desktop Entry]\n",
    };
    for (const std::string& text : refused) {
        EXPECT_FALSE(DesktopEntry::parse(text)) << testing::PrintToString(text);
    }
}

}  // namespace gruk
