#include "tests/support/made_home.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

class Home {
public:
    Home(const TemporaryDirectory& disk, std::string home) : disk_(disk), home_(std::move(home)) {}

    void office() const
    {
        files("Documents/Invoices", 90, 40, "invoice", ".pdf", 3'000);
        files("Documents/Letters", 20, 15, "letter", ".odt", 2'000);
        files("Pictures/Trips", 30, 60, "img", ".jpg", 9'000);
        files("Music/Albums", 25, 12, "track", ".flac", 20'000);
        files("Desktop", 0, 12, "note", ".txt", 500);
        file("Downloads/report.pdf", 70'000);
        file("Downloads/report (1).pdf", 70'000);
        file("Downloads/setup.dmg", 900'000);
        file("Downloads/printer.pkg", 400'000);
        daysOld("Downloads/setup.dmg", 90);
        daysOld("Downloads/printer.pkg", 45);
        files("Downloads", 0, 40, "paper", ".pdf", 4'000);
    }

    void developer() const
    {
        for (int project = 0; project < 6; ++project) {
            const std::string folder = "src/project-" + std::to_string(project);
            files(folder + "/source", 12, 10, "module", ".cpp", 1'500);
            files(folder + "/.git/objects", 60, 5, "object", "", 700);
            file(folder + "/package.json", 300);
            files(folder + "/node_modules", 130, 12, "part", ".js", 400);
        }
        files(".gradle/caches/modules", 20, 10, "jar", ".jar", 8'000);
    }

    void desktopsOwn() const
    {
        files(".cache/thumbnails/large", 0, 500, "thumb", ".png", 2'000);
        files(".config/mail/Cache", 0, 60, "part", "", 2'000);
        files(".local/share/mail/inbox", 0, 300, "message", ".eml", 1'000);
        // Trashed long ago, and exactly what would be a finding anywhere else.
        trashed("old.dmg", "Downloads/old.dmg", 1'500'000);
        daysOld(".local/share/Trash/files/old.dmg", 200);
        trashed("site/node_modules", "src/site", 0);
        files(".local/share/Trash/files/site/node_modules", 0, 30, "part", ".js", 900);
        trashed("bill.pdf", "Downloads/bill.pdf", 50'000);
        file(".local/share/Trash/files/bill (1).pdf", 50'000);
    }

    void oddities() const
    {
        disk_.symbolicLink(below("Videos"), disk_.folder("other disk/Videos"));
        disk_.file("other disk/Videos/film.mkv", 100'000);
        file("Documents/twice.bin", 30'000);
        disk_.hardLink(below("Documents/Letters/twice again.bin"), below("Documents/twice.bin"));
        file("Documents/" + std::string(200, 'n'), 100);
        file("Documents/caf\xE9.txt", 100);
        file("Machines/disk.img", 0);
        fs::resize_file(disk_.path(below("Machines/disk.img")), std::uintmax_t{1} << 42U);
        disk_.folder(below("Empty/Emptier"));
        deepFolder();
    }

private:
    [[nodiscard]] std::string below(const std::string& relative) const
    {
        return home_ + "/" + relative;
    }
    void file(const std::string& relative, std::size_t size) const
    {
        disk_.file(below(relative), size);
    }
    /// `each` files in every one of `folders` folders below `place`; in `place` itself for none.
    void files(const std::string& place, int folders, int each, const std::string& name,
               const std::string& extension, std::size_t size) const
    {
        for (int folder = 0; folder < std::max(folders, 1); ++folder) {
            const std::string in =
                folders == 0 ? place : place + "/" + name + "s " + std::to_string(folder);
            for (int i = 0; i < each; ++i) {
                file(in + "/" + name + " " + std::to_string(i) + extension, size);
            }
        }
    }
    void daysOld(const std::string& relative, int days) const
    {
        fs::last_write_time(disk_.path(below(relative)),
                            fs::file_time_type::clock::now() - std::chrono::hours(24) * days);
    }
    /// An item of the Trash with its info file; a folder for the size 0.
    void trashed(const std::string& name, const std::string& from, std::size_t size) const
    {
        const std::string trash = ".local/share/Trash/";
        if (size > 0) {
            file(trash + "files/" + name, size);
        } else {
            disk_.folder(below(trash + "files/" + name));
        }
        disk_.fileWith(below(trash + "info/" + name.substr(0, name.find('/')) + ".trashinfo"),
                       "[Trash Info]\nPath=" + disk_.path(below(from))
                           + "\nDeletionDate=2024-03-01T12:00:00\n");
    }
    /// A chain of folders whose path is longer than the system takes, with a file at its end.
    void deepFolder() const
    {
        const std::string name(250, 'd');
        int at = ::open(disk_.folder(below("Deep")).c_str(), O_DIRECTORY | O_CLOEXEC);
        for (int depth = 0; depth < 20 && at >= 0; ++depth) {
            const bool made = ::mkdirat(at, name.c_str(), 0700) == 0;
            const int next = made ? ::openat(at, name.c_str(), O_DIRECTORY | O_CLOEXEC) : -1;
            ::close(at);
            at = next;
        }
        const int end = at < 0 ? -1 : ::openat(at, "end.bin", O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        if (end < 0 || ::write(end, name.data(), name.size()) < 0) {
            throw std::runtime_error("the deep folder could not be made");
        }
        ::close(end);
        ::close(at);
    }

    const TemporaryDirectory& disk_;
    std::string home_;
};

}  // namespace

void makeHome(const TemporaryDirectory& disk, const std::string& home)
{
    const Home made(disk, home);
    made.office();
    made.developer();
    made.desktopsOwn();
    made.oddities();
}

}  // namespace gruk::test
