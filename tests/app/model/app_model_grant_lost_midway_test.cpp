#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"
#include "tests/support/moments.h"

/// The folder goes away while it is granted.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::Moments;

/// Grants a second folder, which goes at one of the calls for its bookmark.
class GrantHouse {
public:
    GrantHouse()
        : house_([this](ModelCollaborators& all) {
              BookmarkCalls calls = BookmarkCalls::live();
              const auto moments = moments_;
              calls.make = [moments, live = calls.make](const FileURL& url) {
                  moments->pass();
                  std::string bookmark = live(url);
                  moments->pass();
                  return bookmark;
              };
              calls.resolve = [moments, live = calls.resolve](std::string_view bookmark) {
                  moments->pass();
                  return live(bookmark);
              };
              calls.startAccessing = [moments, live = calls.startAccessing](const FileURL& url) {
                  moments->pass();
                  return live(url);
              };
              const FileURL app =
                  all.desktopDirectory().deletingLastPathComponent().appending("app/grants.json");
              all.grantStore = std::make_shared<GrantStore>(app, calls);
          })
    {
        former_ = house_.makePatrolledRealm("former");
        house_.directory.file("chosen/file", 4'096);
        house_.panel->answers.push_back(chosen());
    }

    [[nodiscard]] test::ModelHouse& house() { return house_; }
    [[nodiscard]] Moments& moments() { return *moments_; }
    [[nodiscard]] FileURL chosen() const
    {
        return FileURL::directory(house_.directory.path("chosen"));
    }
    [[nodiscard]] const FileURL& former() const { return former_; }

private:
    std::shared_ptr<Moments> moments_ = std::make_shared<Moments>();
    test::ModelHouse house_;
    FileURL former_;
};

void expectGrantTold(GrantHouse& at)
{
    test::ModelHouse& house = at.house();
    AppModel& model = *house.model;
    EXPECT_FALSE(model.errorMessage()) << "no message of a grant reaches the screen";
    if (model.grants().size() == 1) {
        ASSERT_EQ(house.logLines.size(), 1U);
        EXPECT_EQ(house.logLines.front(), "Gruk: failed to grant access to " + at.chosen().path()
                                              + ": " + at.chosen().path()
                                              + ": No such file or directory");
        EXPECT_EQ(model.activeRootURL(), at.former());
    } else {
        EXPECT_TRUE(house.logLines.empty());
        EXPECT_EQ(model.activeRootURL(), at.chosen()) << "selected also without access";
        const bool isGone = !fs::exists(at.chosen().path());
        house.patrol();
        EXPECT_EQ(model.errorMessage().has_value(), isGone);
        if (isGone) {
            EXPECT_EQ(model.errorMessage(), "Gruk no longer has access to this location. Grant "
                                            "access again to patrol it.");
        }
    }
    const std::size_t grants = model.grants().size();
    house.restart();
    EXPECT_EQ(house.model->grants().size(), grants) << "the list on the disk is the one on screen";
}

TEST(AppModelGrantLostMidway, aFolderThatGoesWhileItIsGrantedIsLoggedOrDisconnected)
{
    bool isReached = true;
    std::size_t moment = 0;
    for (; isReached && !HasFailure(); ++moment) {
        SCOPED_TRACE("moment " + std::to_string(moment));
        GrantHouse at;
        at.moments().arm(moment, [&] { fs::remove_all(at.chosen().path()); });
        at.house().model->grantRealm();
        at.house().settle();
        isReached = at.moments().isReached();
        expectGrantTold(at);
    }
    EXPECT_GT(moment, 3U);
}

}  // namespace

}  // namespace gruk
