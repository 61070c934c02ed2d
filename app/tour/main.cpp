#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QTimer>

#include "app/tour/private_home.h"
#include "app/tour/tour.h"

namespace {

QCoro::Task<> runTour(gruk::tour::Tour& tour, int& code)
{
    try {
        co_await tour.run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gruk_tour: %s\n", error.what());
        code = EXIT_FAILURE;
    }
    QCoreApplication::exit(code);
}

int takePictures(QApplication& application, const gruk::tour::PrivateHome& home, const QString& out,
                 const std::optional<std::filesystem::path>& folder,
                 gruk::tour::Tour::Length length)
{
    gruk::tour::Camera camera(QFile::encodeName(out).toStdString());
    int code = EXIT_SUCCESS;
    {
        gruk::tour::Tour tour(camera, home.home(), folder, length);
        QTimer::singleShot(0, &application, [&] { runTour(tour, code); });
        application.exec();
    }
    std::fprintf(stderr, "%d pictures, %d failed\n", camera.taken(), camera.failed());
    return camera.failed() > 0 || camera.taken() == 0 ? EXIT_FAILURE : code;
}

}  // namespace

int main(int argc, char* argv[])
{
    try {
        // Before anything asks for a folder of the user's.
        const gruk::tour::PrivateHome home;
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        QApplication application(argc, argv);
        QApplication::setApplicationName(QStringLiteral("gruk_tour"));

        QCommandLineParser arguments;
        arguments.setApplicationDescription(QStringLiteral(
            "Patrols a realm of its own twice and writes a picture of each screen."));
        arguments.addHelpOption();
        const QCommandLineOption out(QStringLiteral("out"),
                                     QStringLiteral("Where the pictures go."),
                                     QStringLiteral("DIR"), QStringLiteral("gruk-tour"));
        arguments.addOption(out);
        const QCommandLineOption hardTimes(
            QStringLiteral("hard-times"),
            QStringLiteral("Also show a store of 500 MB while it is read, and tell how long the "
                           "window stands still. Takes a minute and that much space."));
        arguments.addOption(hardTimes);
        arguments.addPositionalArgument(
            QStringLiteral("FOLDER"),
            QStringLiteral("Patrol a copy of this folder (names, sizes and dates) instead."),
            QStringLiteral("[FOLDER]"));
        arguments.process(application);

        std::optional<std::filesystem::path> folder;
        if (!arguments.positionalArguments().isEmpty()) {
            folder = QFile::encodeName(arguments.positionalArguments().constFirst()).toStdString();
            std::error_code error;
            if (!std::filesystem::is_directory(*folder, error)) {
                std::fprintf(stderr, "gruk_tour: %s is not a folder that can be opened%s%s.\n",
                             folder->c_str(), error ? ": " : "",
                             error ? error.message().c_str() : "");
                return EXIT_FAILURE;
            }
        }
        const auto length = arguments.isSet(hardTimes) ? gruk::tour::Tour::Length::withHardTimes
                                                       : gruk::tour::Tour::Length::usual;
        return takePictures(application, home, arguments.value(out), folder, length);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gruk_tour: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
