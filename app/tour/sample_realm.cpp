#include "app/tour/sample_realm.h"

#include <chrono>
#include <cstdint>
#include <string>

#include "app/tour/space.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kilobyte = 1'000;
constexpr std::uint64_t megabyte = 1'000'000;

void file(const fs::path& at, std::uint64_t size, int daysOld = 0)
{
    fs::create_directories(at.parent_path());
    makeFileOfSize(at, size, size);
    fs::last_write_time(at, fs::file_time_type::clock::now() - std::chrono::hours(24 * daysOld));
}

void makeDownloads(const fs::path& downloads)
{
    file(downloads / "report.pdf", 4 * megabyte, 12);
    file(downloads / "report (1).pdf", 4 * megabyte, 11);
    file(downloads / "report (2).pdf", 4 * megabyte, 2);
    file(downloads / "holiday plans.docx", 380 * kilobyte, 40);
    file(downloads / "Editor-4.2.dmg", 38 * megabyte, 190);
    file(downloads / "PhotoTool.pkg", 21 * megabyte, 64);
    file(downloads / "Fresh-1.0.dmg", 9 * megabyte, 3);
    file(downloads / "dataset.zip", 17 * megabyte, 130);
}

void makeProjects(const fs::path& projects)
{
    for (int package = 0; package < 40; ++package) {
        file(projects / "website/node_modules" / ("package-" + std::to_string(package))
                 / "index.js",
             640 * kilobyte, 30);
    }
    file(projects / "website/src/main.js", 42 * kilobyte, 2);
    file(projects / "swift-tool/.build/debug.bin", 13 * megabyte, 20);
    file(projects / "notes/ideas.md", 12 * kilobyte, 1);
    file(projects / "simulation/run.log", 6 * megabyte, 1);
}

void makeNames(const fs::path& root)
{
    file(root / "Музыка/Песня о лесе.mp3", 7 * megabyte, 400);
    file(root / "写真/山の朝.jpg", 5 * megabyte, 220);
    file(root / "صور/شجرة.png", 3 * megabyte, 210);
    file(root / "Emoji 🌲🦔/pinecone 🌰.heic", 2 * megabyte, 10);
    file(root / std::string("broken \xff\xfe name/caf\xe9.txt"), 800 * kilobyte, 15);
    file(root / "A folder name that goes on and on because somebody wanted to say everything in it"
             / "and then wrote the whole story of the file into its name as well.txt",
         900 * kilobyte, 9);
}

}  // namespace

void makeSampleRealm(const fs::path& root)
{
    makeDownloads(root / "Downloads");
    makeProjects(root / "Projects");
    makeNames(root);
    file(root / "Movies/Expedition to the north ridge.mov", 96 * megabyte, 500);
    file(root / "Movies/Teaser.mp4", 12 * megabyte, 95);
    file(root / "Pictures/Screenshot 2026-10-01 at 10.00.00.png", 2 * megabyte, 50);
    file(root / "Archive/2019.tar.gz", 44 * megabyte, 2'300);
    file(root / "Scratch/throwaway.bin", 11 * megabyte, 4);
    fs::create_directory_symlink("Movies", root / "link to Movies");
    fs::create_hard_link(root / "Movies/Teaser.mp4", root / "Movies/Teaser again.mp4");
    fs::create_directories(root / "Private");
    file(root / "Private/diary.txt", 10 * kilobyte, 100);
    fs::permissions(root / "Private", fs::perms::none);
}

void changeSampleRealm(const fs::path& root)
{
    file(root / "Projects/simulation/run.log", 58 * megabyte);
    file(root / "Recordings/interview.wav", 26 * megabyte);
    file(root / "Downloads/dataset (1).zip", 17 * megabyte);
    fs::resize_file(root / "Archive/2019.tar.gz", 30 * megabyte);
    fs::remove_all(root / "Scratch");
}

void makeTidyRealm(const fs::path& root)
{
    file(root / "letters/spring.txt", 24 * kilobyte, 20);
    file(root / "letters/autumn.txt", 30 * kilobyte, 200);
    file(root / "map.pdf", 900 * kilobyte, 300);
}

void makeCrowdedRealm(const fs::path& root, int findings)
{
    const std::string longName(180, 'w');
    for (int number = 0; number < findings; ++number) {
        const fs::path folder = root / ("batch " + std::to_string(number / 500));
        const std::string stem = "scan of page " + std::to_string(number) + " " + longName;
        file(folder / (stem + ".pdf"), 4 * kilobyte);
        file(folder / (stem + " (1).pdf"), 4 * kilobyte);
    }
}

}  // namespace gruk::tour
