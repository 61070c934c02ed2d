#include "core/patrol/tree_walk.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/fake_tree.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

struct RecordingError : std::runtime_error {
    RecordingError() : std::runtime_error("recording") {}
};

/// Notes what it is told, and fails where it is asked to.
class FailingRules {
public:
    using Directory = std::string;

    [[nodiscard]] static std::string_view name(const Directory& directory) { return directory; }
    void willVisit() const { failAt("visit"); }
    void otherVolume(const Directory&, const ListedItem&) const { failAt("other volume"); }
    [[nodiscard]] Directory directory(const Directory&, const ListedItem& item) const
    {
        failAt("directory");
        return std::string(item.name);
    }
    void file(const Directory&, const ListedItem&, FileMeeting) const { failAt("file"); }
    void listed(const Directory&) const {}
    bool absorbs(const Directory& directory, const std::exception&)
    {
        absorbed.push_back(directory);
        return true;
    }

    std::string failure;
    std::vector<std::string> absorbed;

private:
    void failAt(std::string_view what) const
    {
        if (failure == what) {
            throw RecordingError();
        }
    }
};

}  // namespace

TEST(TreeWalk, onlyTheListingsOwnErrorIsOfferedForAbsorption)
{
    const test::TemporaryDirectory disk;
    test::FakeTree tree(disk.url());
    tree.file("folder/file");
    tree.directory("folder/inner");
    tree.file("folder/mount").deviceID = tree.otherDevice();
    const auto walk = [&](FailingRules& rules) {
        const DirectoryReader reader = tree.reader();
        const auto lister = makeFunctionLister(tree.root(), reader);
        const std::stop_token never;
        TreeWalk(*lister, tree.device(), never, rules).run();
    };
    for (const char* failure : {"visit", "other volume", "directory", "file"}) {
        FailingRules rules;
        rules.failure = failure;
        EXPECT_THROW(walk(rules), RecordingError) << failure;
        EXPECT_TRUE(rules.absorbed.empty()) << failure;
    }
    tree.onListing("folder", [] { throw RecordingError(); });
    FailingRules rules;
    walk(rules);
    EXPECT_EQ(rules.absorbed, std::vector<std::string>{"folder"});
}

}  // namespace gruk
