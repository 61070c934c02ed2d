#include "tests/repository/walls.h"

#include <ostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace gruk::repository {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

const std::set<std::string> widgets = {"QLabel", "QWidget", "qwidget.h"};

std::vector<Breach> breachesOf(const std::string& path, const std::string& text)
{
    return breaches({parseSource(path, text)}, widgets);
}

auto says(const std::string& words)
{
    return Field("message", &Breach::message, HasSubstr(words));
}

struct ForbiddenInclude {
    std::string path;
    std::string include;
    std::string words;
};

void PrintTo(const ForbiddenInclude& forbidden, std::ostream* out)
{
    *out << forbidden.path << " includes " << forbidden.include;
}

class WallRules : public testing::TestWithParam<ForbiddenInclude> {};

TEST_P(WallRules, nameTheFileTheLineAndWhatItMayNotInclude)
{
    const auto& [path, include, words] = GetParam();

    EXPECT_THAT(
        breachesOf(path, "#pragma once\n\n#include <string>\n#include " + include + "\n"),
        ElementsAre(AllOf(Field(&Breach::path, path), Field(&Breach::line, 4U), says(words))));
}

INSTANTIATE_TEST_SUITE_P(
    EveryRule, WallRules,
    testing::Values(
        ForbiddenInclude{"platform/files/metadata.h", "<sys/stat.h>",
                         "platform/ outside its system folder includes no header of an operating"},
        ForbiddenInclude{"platform/foundation/date.cpp", "<unistd.h>",
                         "platform/ outside its system folder includes no header of an operating"},
        ForbiddenInclude{"platform/foundation/date.cpp", "<QString>",
                         "platform/ includes nothing of the toolkit"},
        ForbiddenInclude{"platform/linux/metadata.cpp", "<QtCore/QFile>",
                         "platform/ includes nothing of the toolkit"},
        ForbiddenInclude{"platform/linux/metadata.cpp", "\"core/patrol/file_kind.h\"",
                         "platform/ includes nothing of core/"},
        ForbiddenInclude{"platform/events/run_loop.h", "\"app/desktop/qt_run_loop.h\"",
                         "platform/ includes nothing of app/"},
        ForbiddenInclude{"platform/foundation/errors.cpp", "\"platform/linux/errno_error.h\"",
                         "nothing outside platform/linux/ includes its headers"},
        ForbiddenInclude{"core/patrol/snapshot_scanner.cpp", "\"platform/linux/errno_error.h\"",
                         "nothing outside platform/linux/ includes its headers"},
        ForbiddenInclude{"app/main.cpp", "\"platform/linux/errno_error.h\"",
                         "nothing outside platform/linux/ includes its headers"},
        ForbiddenInclude{"core/patrol/snapshot_scanner.cpp", "<dirent.h>",
                         "core/ includes no header of an operating system"},
        ForbiddenInclude{"core/patrol/snapshot_scanner.h", "<qglobal.h>",
                         "core/ includes nothing of the toolkit"},
        ForbiddenInclude{"core/patrol/snapshot_scanner.h", "<QCoro/QCoroTask>",
                         "core/ includes nothing of the toolkit"},
        ForbiddenInclude{"core/patrol/snapshot_scanner.cpp", "\"app/model/app_model.h\"",
                         "core/ includes nothing of app/"},
        ForbiddenInclude{"app/model/app_model.h", "<QWidget>", "app/model/ knows no widget"},
        ForbiddenInclude{"app/model/app_model.h", "<qwidget.h>", "app/model/ knows no widget"},
        ForbiddenInclude{"app/model/app_model.h", "<QtWidgets/QLabel>",
                         "app/model/ knows no widget"},
        ForbiddenInclude{"app/model/app_model.cpp", "<QtWidgets>", "app/model/ knows no widget"},
        ForbiddenInclude{"app/model/app_model.cpp", "\"app/screens/patrol_page.h\"",
                         "app/model/ includes no screen"},
        ForbiddenInclude{"app/model/app_model.cpp", "\"app/theme/palette.h\"",
                         "app/model/ includes nothing of the theme"},
        ForbiddenInclude{"app/screens/patrol_page.cpp", "\"core/patrol/snapshot_table.h\"",
                         "app/ includes no internals of the core"},
        ForbiddenInclude{"app/model/app_model.cpp", "\"core/patrol/snapshot_decoder.h\"",
                         "app/ includes no internals of the core"},
        ForbiddenInclude{"app/screens/patrol_page.cpp", "<filesystem>",
                         "app/screens/ reaches no file"},
        ForbiddenInclude{"app/screens/patrol_page.cpp", "\"platform/files/tree_reader.h\"",
                         "app/screens/ reaches no file"},
        ForbiddenInclude{"app/screens/patrol_page.cpp", "<unistd.h>",
                         "app/screens/ includes no header of a system"}));

TEST(Walls, letEachFloorIncludeWhatLiesBelowIt)
{
    EXPECT_THAT(breachesOf("app/screens/patrol_page.cpp",
                           "#include <QWidget>\n#include \"app/model/app_model.h\"\n"
                           "#include \"core/patrol/review_finding.h\"\n"),
                IsEmpty());
    EXPECT_THAT(breachesOf("app/model/app_model.h", "#include <QObject>\n#include <QPointer>\n"),
                IsEmpty());
    EXPECT_THAT(breachesOf("core/patrol/snapshot_scanner.cpp",
                           "#include <string>\n#include \"platform/files/tree_reader.h\"\n"),
                IsEmpty());
    EXPECT_THAT(breachesOf("platform/linux/metadata.cpp",
                           "#include <sys/stat.h>\n#include \"platform/linux/errno_error.h\"\n"),
                IsEmpty());
}

TEST(Walls, letTestsIncludeEverything)
{
    EXPECT_THAT(breachesOf("tests/core/patrol/snapshot_entries_test.cpp",
                           "#include <unistd.h>\n#include <QWidget>\n"
                           "#include \"core/patrol/snapshot_table.h\"\n"
                           "#include \"platform/linux/errno_error.h\"\n"),
                IsEmpty());
}

TEST(Walls, doNotTakeAFolderForAnotherThatItsNameBeginsWith)
{
    EXPECT_THAT(breachesOf("core_tools/tool.cpp", "#include <unistd.h>\n"), IsEmpty());
}

TEST(Walls, seeAnIncludeHoweverItIsSpaced)
{
    EXPECT_THAT(breachesOf("core/a.cpp", "  #  include   <unistd.h> // for a name\n"),
                ElementsAre(says("(unistd.h)")));
}

TEST(Walls, doNotTakeACommentForAnInclude)
{
    EXPECT_THAT(breachesOf("core/a.cpp", "// #include <unistd.h>\n"), IsEmpty());
}

TEST(Walls, keepTheNameOfASystemOutOfThePlatformsHeaders)
{
    EXPECT_THAT(breachesOf("platform/files/metadata.h", "/// One call.\n/// On Linux, statx.\n"),
                ElementsAre(AllOf(Field(&Breach::line, 2U), says("(linux)")),
                            AllOf(Field(&Breach::line, 2U), says("(statx)"))));
}

TEST(Walls, readTheNameOfASystemOnlyAsAWholeWord)
{
    EXPECT_THAT(breachesOf("platform/files/metadata.h", "bool isUnixoid; // renames, positions\n"),
                IsEmpty());
}

TEST(Walls, letTheSystemsOwnFolderSpeakOfTheSystem)
{
    EXPECT_THAT(breachesOf("platform/linux/errno_error.h", "/// statx on Linux.\n"), IsEmpty());
}

TEST(Walls, refuseASourceThatIsTooLong)
{
    std::string text;
    for (std::size_t i = 0; i < longestSource; ++i) {
        text += "int x;\n";
    }
    EXPECT_THAT(breachesOf("core/a.cpp", text), IsEmpty());
    EXPECT_THAT(breachesOf("core/a.cpp", text + "int y;\n"), ElementsAre(says("at most 600")));
}

TEST(ReadSources, findsSourcesAndHeadersOfEveryFolderInOrder)
{
    const test::TemporaryDirectory root;
    root.fileWith("core/patrol/b.cpp", "#include \"core/patrol/b.h\"\n");
    root.fileWith("core/patrol/b.h", "#pragma once\n");
    root.fileWith("app/main.cpp", "int main() {}\n");
    root.fileWith("core/notes.md", "#include <unistd.h>\n");
    root.fileWith("build/release/generated.cpp", "#include <unistd.h>\n");

    const auto files = readSources(root.path());

    EXPECT_THAT(files, ElementsAre(Field(&SourceFile::path, "app/main.cpp"),
                                   AllOf(Field(&SourceFile::path, "core/patrol/b.cpp"),
                                         Field(&SourceFile::includes,
                                               ElementsAre(Include{"core/patrol/b.h", 1}))),
                                   Field(&SourceFile::path, "core/patrol/b.h")));
}

}  // namespace

}  // namespace gruk::repository
