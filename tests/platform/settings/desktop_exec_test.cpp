#include "platform/linux/desktop_exec.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace gruk {

TEST(DesktopExec, aProgramIsQuotedAndItsPercentSignsAreDoubled)
{
    EXPECT_EQ(execValue("/usr/bin/gruk"), R"("/usr/bin/gruk")");
    EXPECT_EQ(execValue("/opt/my apps/gruk"), R"("/opt/my apps/gruk")");
    EXPECT_EQ(execValue("/a\"b`c$d\\e"), R"("/a\"b\`c\$d\\e")");
    EXPECT_EQ(execValue("/50%/%f"), R"("/50%%/%%f")");
}

TEST(DesktopExec, aProgramThatNoValueCanNameIsNone)
{
    for (const std::string& program :
         {std::string(), std::string("/a=b"), std::string("/\xff"), std::string("/a\0b", 4)}) {
        EXPECT_EQ(execValue(program), std::nullopt) << testing::PrintToString(program);
    }
}

TEST(DesktopExec, theProgramIsTheFirstArgument)
{
    EXPECT_EQ(programOfExec("gruk"), "gruk");
    EXPECT_EQ(programOfExec("  /usr/bin/gruk --quiet %U"), "/usr/bin/gruk");
    EXPECT_EQ(programOfExec("\"/opt/my apps/gruk\" \"--a b\""), "/opt/my apps/gruk");
    EXPECT_EQ(programOfExec("\"/a\\\\b\\c\""), "/a\\b\\c");
    EXPECT_EQ(programOfExec("/100%%"), "/100%");
}

TEST(DesktopExec, valuesThatMakeNoSenseNameNoProgram)
{
    for (const char* value : {"", "   ", "\"\"", "\"/a", "\"/a\"b", "/a\"b\"", "%f", "/a%", "/a%f",
                              "'/a b'", "/a;b", "$HOME/gruk", "~/gruk", "/a\\ b", "a=b"}) {
        EXPECT_EQ(programOfExec(value), std::nullopt) << value;
    }
}

TEST(DesktopExec, everyProgramThatCanBeNamedComesBack)
{
    constexpr char alphabet[] = "/ab \"`$\\%'><~|&;*?#()\t\n";
    std::mt19937 random(6);
    for (int i = 0; i < 20'000; ++i) {
        std::string program = "/";
        for (auto left = random() % 10; left > 0; --left) {
            program += alphabet[random() % (sizeof alphabet - 1)];
        }
        const auto value = execValue(program);
        ASSERT_TRUE(value) << program;
        ASSERT_EQ(programOfExec(*value), program) << *value;
        ASSERT_EQ(programOfExec(*value + " --more"), program) << *value;
    }
}

}  // namespace gruk
