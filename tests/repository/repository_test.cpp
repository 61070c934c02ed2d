#include <regex>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/repository/walls.h"

namespace gruk::repository {

namespace {

using testing::IsSupersetOf;

TEST(Repository, keepsItsWalls)
{
    const auto files = readSources(GRUK_SOURCE_DIRECTORY);
    const auto widgetHeaders = headerNames(GRUK_WIDGET_HEADERS);
    // What finds nothing because it looked at nothing must not pass.
    std::set<std::string> paths;
    for (const SourceFile& file : files) {
        paths.insert(file.path);
    }
    ASSERT_THAT(paths, IsSupersetOf({"platform/files/metadata.h", "app/main.cpp",
                                     "core/patrol/snapshot_scanner.cpp"}));
    ASSERT_TRUE(widgetHeaders.contains("QWidget"));

    for (const Breach& breach : breaches(files, widgetHeaders)) {
        ADD_FAILURE() << breach.path << ":" << breach.line << ": " << breach.message;
    }
}

TEST(Repository, nothingInTheProgramNamesAnotherSystemOrAProgramOfIt)
{
    const std::regex names(R"(\b(Finder|[Mm]acOS|Macs?|Spotlight|Dock)\b)");
    std::size_t lines = 0;
    for (const SourceFile& file : readSources(GRUK_SOURCE_DIRECTORY)) {
        if (!file.isIn("app") && !file.isIn("core") && !file.isIn("platform")) {
            continue;
        }
        for (const std::string& line : file.lines) {
            ++lines;
            EXPECT_FALSE(std::regex_search(line, names)) << file.path << ": " << line;
        }
    }
    EXPECT_GT(lines, 10'000U);
}

}  // namespace

}  // namespace gruk::repository
