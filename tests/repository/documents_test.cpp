#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace gruk::repository {

namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> documents()
{
    const fs::path root = GRUK_SOURCE_DIRECTORY;
    std::vector<fs::path> found = {root / "README.md", root / "CONTRIBUTING.md"};
    for (const auto& entry : fs::directory_iterator(root / "docs")) {
        if (entry.path().extension() == ".md") {
            found.push_back(entry.path());
        }
    }
    return found;
}

TEST(Documents, whatTheyLinkToIsThere)
{
    const std::regex link(R"(\]\(([^)#:]+)\))");
    std::size_t links = 0;
    for (const fs::path& document : documents()) {
        const std::string text = textOf(document);
        for (std::sregex_iterator at(text.begin(), text.end(), link), end; at != end; ++at) {
            ++links;
            EXPECT_TRUE(fs::exists(document.parent_path() / (*at)[1].str()))
                << document << " links to " << (*at)[1];
        }
    }
    EXPECT_GT(links, 5U);
}

TEST(Documents, headingsAndCommandsAreWrittenAsSuch)
{
    // A formatter of C++ that is let loose on a document tears them apart.
    const std::regex torn(R"(^ *#+[A-Za-z]|^ +#[^!]|[a-z] / [a-z]+ - )", std::regex::multiline);
    for (const fs::path& document : documents()) {
        const std::string text = textOf(document);
        std::smatch match;
        EXPECT_FALSE(std::regex_search(text, match, torn)) << document << ": " << match.str();
    }
}

TEST(Scripts, canBeReadByTheShellAndBeStarted)
{
    const fs::path root = GRUK_SOURCE_DIRECTORY;
    std::vector<fs::path> scripts = {root / "run", root / "test", root / ".ci/run"};
    for (const auto& entry : fs::directory_iterator(root / "scripts")) {
        if (entry.is_regular_file() && entry.path().extension().empty()) {
            scripts.push_back(entry.path());
        }
    }
    ASSERT_GT(scripts.size(), 4U);
    for (const fs::path& script : scripts) {
        const std::string first = textOf(script).substr(0, 25);
        ASSERT_TRUE(first.starts_with("#!/usr/bin/env ")) << script << " begins with " << first;
        EXPECT_NE(fs::status(script).permissions() & fs::perms::owner_exec, fs::perms::none)
            << script;
        if (first.starts_with("#!/usr/bin/env bash")) {
            const std::string command = "bash -n '" + script.string() + "'";
            EXPECT_EQ(std::system(command.c_str()), 0) << script;  // NOLINT(cert-env33-c)
        }
    }
}

}  // namespace

}  // namespace gruk::repository
