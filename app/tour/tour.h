#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <QCoro/QCoroTask>

#include "app/theme/theme.h"
#include "app/tour/camera.h"
#include "app/tour/stage.h"

namespace gruk::tour {

/// Drives the real model and screens through their states and takes a picture of each.
class Tour {
public:
    /// What takes long, too.
    enum class Length { usual, withHardTimes };

    /// `realms` is a folder for the realms that the tour makes; with a `folder`, a copy of it is
    /// the realm that is patrolled.
    Tour(Camera& camera, std::filesystem::path realms, std::optional<std::filesystem::path> folder,
         Length length = Length::usual);

    /// Goes through every scene. The event loop must run.
    [[nodiscard]] QCoro::Task<> run();

    // For the scenes, which stand in files of their own.
    /// Takes the picture in light and in dark.
    QCoro::Task<> take(Stage& stage, std::string name);
    /// The same with the window as tall as its page.
    QCoro::Task<> takeWholePage(Stage& stage, std::string name);
    /// Takes a picture of something that stands by itself, in light and in dark, while nothing runs
    /// on but what is held.
    QCoro::Task<> takeAlone(Stage& stage, QWidget& widget, std::string name);
    void setScheme(ColourScheme scheme);
    /// Another run of the application, with that scanner.
    [[nodiscard]] Stage newStage(std::shared_ptr<SnapshotScanner> scanner);
    [[nodiscard]] Camera& camera() { return camera_; }
    [[nodiscard]] Theme& theme() { return theme_; }
    /// The folder in which the tour makes realms.
    [[nodiscard]] const std::filesystem::path& realms() const { return realms_; }

private:
    struct Look {
        std::string suffix;
        QSize size;
        int scale = 1;
    };

    void makeRealms();
    void changeRealm();

    QCoro::Task<> showFirstStart(Stage& stage);
    QCoro::Task<> showPatrols(Stage& stage);
    QCoro::Task<> showLooks(Stage& stage);
    QCoro::Task<> showOpenParts(Stage& stage);
    QCoro::Task<> showRunningPatrol();
    QCoro::Task<> showPatrolElsewhere();
    QCoro::Task<> showTidyRealm(Stage& stage);
    QCoro::Task<> showCrowdedRealm(Stage& stage);
    QCoro::Task<> showLostRealm(Stage& stage);
    QCoro::Task<> showRemoval(Stage& stage);
    /// The scenes that follow are about findings, duplicates and rules, which a folder of the
    /// user's need not have: they are played in the tour's own realm.
    QCoro::Task<> goOnInTheForest(Stage& stage);
    /// What the actions of a user are told by, done and refused.
    QCoro::Task<> showMessages(Stage& stage);

    /// Every shield, in each palette.
    void showShields();

    Camera& camera_;
    std::filesystem::path realms_;
    std::optional<std::filesystem::path> folder_;
    Length length_;
    std::filesystem::path realm_;
    std::shared_ptr<RunLoop> loop_;
    std::shared_ptr<TaskPool> threads_;
    Theme theme_;
};

}  // namespace gruk::tour
