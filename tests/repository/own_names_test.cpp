#include "tests/repository/own_names.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace gruk::repository {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SourceFile sourceWith(const std::string& path, const std::string& own)
{
    return parseSource(path,
                       "namespace gruk {\n\nnamespace {\n\n" + own + "\n\n}  // namespace\n\n}\n");
}

SourceFile headerWith(const std::string& path, const std::string& declared,
                      const std::string& space = "gruk")
{
    return parseSource(path, "#pragma once\n\nnamespace " + space + " {\n\n" + declared
                                 + "\n\n}  // namespace " + space + "\n");
}

const SourceFile constant = sourceWith("core/patrol/a.cpp", "constexpr int limit = 1;");

TEST(OwnNames, twoSourcesOfALibraryHaveNoneInCommon)
{
    EXPECT_THAT(
        namesThatAreTaken(
            {constant, sourceWith("core/realm/b.cpp", "constexpr double limit = 2;")}),
        ElementsAre(Breach{"core/realm/b.cpp", 5, "the name limit is taken by core/patrol/a.cpp"}));
    EXPECT_THAT(
        namesThatAreTaken({sourceWith("app/model/a.cpp", "struct Row {\n    int height;\n};"),
                           sourceWith("app/theme/b.cpp", "int Row(int height)\n{\n}")}),
        ElementsAre(Breach{"app/theme/b.cpp", 5, "the name Row is taken by app/model/a.cpp"}));
}

TEST(OwnNames, aHeaderOfTheSameFloorOrALowerOneHasThemNeither)
{
    const Breach taken{"core/patrol/a.cpp", 5, "the name limit is taken by platform/files/c.h"};
    EXPECT_THAT(namesThatAreTaken({constant, headerWith("platform/files/c.h",
                                                        "inline constexpr int limit = 3;")}),
                ElementsAre(taken));
    EXPECT_THAT(namesThatAreTaken({constant, headerWith("platform/files/c.h",
                                                        "[[nodiscard]] int limit(int of);")}),
                ElementsAre(taken));
    EXPECT_THAT(namesThatAreTaken({constant, headerWith("platform/files/c.h", "class limit;")}),
                ElementsAre(taken));
}

TEST(OwnNames, whatNoneOfThemCouldMeanIsLeftAlone)
{
    EXPECT_THAT(namesThatAreTaken(
                    {constant, headerWith("app/model/c.h", "inline constexpr int limit = 3;"),
                     headerWith("core/patrol/d.h", "inline constexpr int limit = 3;", "gruk::Of"),
                     headerWith("core/patrol/e.h", "struct Of {\n    int limit = 3;\n};"),
                     sourceWith("core/patrol/f.cpp", "void use()\n{\n    int limit = 3;\n}"),
                     sourceWith("app/tour/g.cpp", "constexpr int limit = 2;")}),
                IsEmpty());
    EXPECT_THAT(namesThatAreTaken({sourceWith("core/a.cpp", "using Index = Table::Index;"),
                                   sourceWith("core/b.cpp", "using Index = Table::Index;")}),
                IsEmpty());
}

TEST(Repository, hasNoNameForTwoThingsWithinALibrary)
{
    const auto files = readSources(GRUK_SOURCE_DIRECTORY);
    ASSERT_GT(files.size(), 100U);
    for (const Breach& breach : namesThatAreTaken(files)) {
        ADD_FAILURE() << breach.path << ":" << breach.line << ": " << breach.message;
    }
}

}  // namespace

}  // namespace gruk::repository
