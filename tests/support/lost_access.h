#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"
#include "tests/support/moves_house.h"

namespace gruk::test {

/// A house whose Desktop is a patrolled realm with a finding in it and loose files.
class LostAccess {
public:
    LostAccess() : LostAccess([](ModelCollaborators&) {}) {}

    /// `change` may put other collaborators in before the model is made; also another Desktop, then
    /// `realm` says where.
    explicit LostAccess(const std::function<void(ModelCollaborators&)>& change,
                        const std::string& realm = "Desktop")
        : house(change)
    {
        namespace fs = std::filesystem;
        house.directory.file(realm + "/old.dmg", 12'288);
        house.directory.file(realm + "/a.png", 4'096);
        house.directory.file(realm + "/b.txt", 4'096);
        fs::last_write_time(path(realm + "/old.dmg"),
                            fs::file_time_type::clock::now() - std::chrono::days(900));
        house.loop->setNow(Date::now());
        desktop = house.makePatrolledRealm(realm);
        house.model->addRealmRule(FileKind::image, "Pictures", true, desktop);
        house.patrol();
        house.allowTrash();
        house.model->selectRealm(desktop);
        EXPECT_EQ(house.model->findings().size(), 1U);
    }

    [[nodiscard]] std::string path(const std::string& relative) const
    {
        return house.directory.path(relative);
    }
    [[nodiscard]] AppModel& model() { return *house.model; }

    /// Every file of the test's whole folder but the program's own, by content.
    [[nodiscard]] std::multiset<std::string> files() const
    {
        std::multiset<std::string> lines;
        for (const std::string& item : MovesHouse::itemsBelow(house.directory.path())) {
            if (item.find("/app/") == std::string::npos && std::filesystem::is_regular_file(item)) {
                lines.insert(std::filesystem::path(item).filename().string() + " "
                             + std::to_string(std::filesystem::file_size(item)));
            }
        }
        return lines;
    }

    ModelHouse house;
    FileURL desktop;
};

}  // namespace gruk::test
