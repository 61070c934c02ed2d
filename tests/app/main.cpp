#include <cstdlib>
#include <filesystem>

#include <QApplication>
#include <QLocale>
#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

/// Every test of the application runs without a display, in a home of its own.
int main(int argc, char* argv[])
{
    testing::InitGoogleTest(&argc, argv);
    const gruk::test::TemporaryDirectory home;
    for (const char* variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME",
                                 "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        const std::string folder = home.folder(variable);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        ::setenv(variable, folder.c_str(), 1);
    }
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
