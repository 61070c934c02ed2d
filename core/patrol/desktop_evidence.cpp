#include "core/patrol/desktop_evidence.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/patrol/snapshot_table.h"

namespace gruk::DesktopEvidence {

namespace {

using Index = SnapshotEntries::Index;

constexpr std::string_view cacheTag = "CACHEDIR.TAG";
constexpr std::string_view anyName = "*";

// Stories that several rows share.
constexpr std::string_view programCache =
    "Kept by one of your programs so that it need not fetch or compute the same things twice — it "
    "fills this again by itself, and is only slower the first time.";
constexpr std::string_view browserCache =
    "A browser's or web app's cache — copies of pages and scripts that it has already shown. Your "
    "settings, logins and bookmarks lie elsewhere, and what is missing is fetched again.";
constexpr std::string_view npmStore =
    "npm's download cache — every package version it ever fetched. `npm install` downloads what "
    "it needs again.";
constexpr std::string_view mavenStore =
    "Maven's local repository — the libraries that your Java builds asked for. The next `mvn` run "
    "downloads what is missing; only what you installed here yourself would have to be built "
    "again.";
constexpr std::string_view condaStore =
    "Conda's package store — the archives that its environments were made from. `conda` downloads "
    "them again when an environment needs them.";
constexpr std::string_view cargoStore =
    "Cargo's copy of the crates that your Rust projects use — the next `cargo build` downloads "
    "and unpacks them again.";
constexpr std::string_view pythonTests =
    "Left by a Python tool to make its next run quicker — it is made anew when that tool runs.";
constexpr std::string_view pythonEnvironments =
    "Isolated Python environments, made by a test runner from the project's own files — the next "
    "run builds them again.";
constexpr std::string_view bytecode =
    "Created automatically by the Python interpreter — holds compiled bytecode for faster "
    "imports, and Python regenerates it the next time these files run.";
constexpr std::string_view virtualEnvironment =
    "A Python virtual environment — the interpreter and the packages of one project. It is made "
    "anew from the list of requirements that the project keeps.";
constexpr std::string_view compiled =
    "What a build made from the sources beside it — the next build makes it again.";

constexpr std::array table = {
    // Caches of programs.
    Row{Place::home, ".cache/*", programCache},
    Row{Place::home, ".var/app/*/cache/*", programCache},
    Row{Place::home, "snap/*/common/.cache/*", programCache},
    Row{Place::home, ".config/*/Cache", browserCache},
    Row{Place::home, ".config/*/Code Cache", browserCache},
    Row{Place::home, ".config/*/GPUCache", browserCache},
    Row{Place::home, ".config/*/CachedData", browserCache},
    Row{Place::home, ".config/*/Service Worker/CacheStorage", browserCache},
    Row{Place::home, ".thumbnails",
        "Small previews of your pictures, made by a file manager — it draws them again when it "
        "shows the folder."},
    // Stores of package managers.
    Row{Place::home, ".npm/_cacache", npmStore},
    Row{Place::home, ".yarn/berry/cache",
        "Yarn's download cache — the packages that your projects asked for. `yarn install` "
        "fetches them again."},
    Row{Place::home, ".local/share/pnpm/store",
        "pnpm's store — one copy of every package, shared by all projects. `pnpm install` fetches "
        "what is missing; the projects' own folders link into it."},
    Row{Place::home, ".bun/install/cache",
        "Bun's download cache — `bun install` fetches the packages again."},
    Row{Place::home, ".cargo/registry/cache", cargoStore},
    Row{Place::home, ".cargo/registry/src", cargoStore},
    Row{Place::home, ".m2/repository", mavenStore},
    Row{Place::home, ".ivy2/cache",
        "Ivy's cache — libraries that sbt or Ant builds asked for. The next build resolves and "
        "downloads them again."},
    Row{Place::home, ".gradle/wrapper/dists",
        "Versions of Gradle itself, fetched by the wrapper of one project or another — each "
        "project fetches the one it names again."},
    Row{Place::home, ".nuget/packages",
        "NuGet's package folder — what your .NET projects restored. `dotnet restore` downloads it "
        "again."},
    Row{Place::home, "go/pkg/mod",
        "Go's module cache — the sources of every module that a build asked for. The next `go "
        "build` downloads them again."},
    Row{Place::home, ".conda/pkgs", condaStore},
    Row{Place::home, "miniconda3/pkgs", condaStore},
    Row{Place::home, "anaconda3/pkgs", condaStore},
    Row{Place::home, ".cabal/packages",
        "Cabal's downloads — the Haskell packages that builds asked for. `cabal update` and the "
        "next build fetch them again."},
    Row{Place::home, ".composer/cache",
        "Composer's cache — archives of PHP packages. `composer install` downloads them again."},
    Row{Place::home, ".ccache",
        "ccache's memory of what was compiled — it fills again as you build, and the first builds "
        "take their full time."},
    // Results of tools and builds.
    Row{Place::anywhere, "__pycache__", bytecode},
    Row{Place::anywhere, ".pytest_cache", pythonTests},
    Row{Place::anywhere, ".mypy_cache", pythonTests},
    Row{Place::anywhere, ".ruff_cache", pythonTests},
    Row{Place::anywhere, ".tox", pythonEnvironments},
    Row{Place::anywhere, ".nox", pythonEnvironments},
    Row{Place::anywhere, ".parcel-cache",
        "Parcel's memory of the last build — the next one starts without it, and is only slower."},
    Row{Place::anywhere, ".dart_tool",
        "Made by Dart's and Flutter's tools for one project — `pub get` and the next build make "
        "it again."},
    Row{Place::anywhere, "dist-newstyle",
        "Cabal's build folder — what it compiled from this Haskell project. `cabal build` "
        "compiles it again."},
    Row{Place::anywhere, ".zig-cache", compiled},
    Row{Place::anywhere, ".next/cache",
        "Next.js's build cache — `next build` fills it again, and only the first build is slower."},
    Row{Place::anywhere, "target", compiled, Proof::beside, "Cargo.toml pom.xml"},
    Row{Place::anywhere, "build", compiled, Proof::beside, "build.gradle build.gradle.kts"},
    Row{Place::anywhere, "_build", compiled, Proof::beside, "mix.exs dune-project"},
    Row{Place::anywhere, ".venv", virtualEnvironment, Proof::inside, "pyvenv.cfg"},
    Row{Place::anywhere, "venv", virtualEnvironment, Proof::inside, "pyvenv.cfg"},
    Row{Place::anywhere, anyName,
        "Its own program has marked this folder as a cache (with a file named CACHEDIR.TAG), "
        "which says that everything in it can be made again.",
        Proof::inside, cacheTag},
};

/// Where programs keep what nobody could make again: no folder of these is a finding as a whole.
constexpr std::array keptWhole = {
    std::string_view(".cache"),
    std::string_view(".config"),
    std::string_view(".config/*"),
    std::string_view(".local"),
    std::string_view(".local/share"),
    std::string_view(".local/share/*"),
    std::string_view(".local/state"),
    std::string_view(".local/state/*"),
    std::string_view(".var"),
    std::string_view(".var/app"),
    std::string_view(".var/app/*"),
    std::string_view(".var/app/*/cache"),
    std::string_view(".var/app/*/config"),
    std::string_view(".var/app/*/data"),
    std::string_view("snap"),
    std::string_view("snap/*"),
    std::string_view("snap/*/common"),
    std::string_view("snap/*/common/.cache"),
};

/// The first component, and what is behind it.
struct Split {
    std::string_view first;
    std::string_view rest;
};

Split split(std::string_view pattern)
{
    const std::size_t slash = pattern.find('/');
    return slash == std::string_view::npos
               ? Split{pattern, {}}
               : Split{pattern.substr(0, slash), pattern.substr(slash + 1)};
}

/// Calls `found` with each entry below `parent` that the pattern names.
template <typename Found>
void follow(const SnapshotEntries& entries, Index parent, std::string_view pattern, Found found)
{
    const auto [first, rest] = split(pattern);
    const auto step = [&, rest = rest](Index child, bool mayBeFile) {
        if (rest.empty() && (mayBeFile || entries.isDirectory(child))) {
            found(child);
        } else if (!rest.empty() && entries.isDirectory(child)) {
            follow(entries, child, rest, found);
        }
    };
    if (first != "*") {
        if (const auto child = entries.findChild(parent, first)) {
            step(*child, false);
        }
        return;
    }
    Index child = parent == SnapshotEntries::noIndex ? 0 : parent + 1;
    const Index end = parent == SnapshotEntries::noIndex ? static_cast<Index>(entries.size())
                                                         : entries.subtreeEnd(parent);
    for (; child < end; child = entries.subtreeEnd(child)) {
        step(child, true);
    }
}

bool hasFile(const SnapshotEntries& entries, Index folder, std::string_view names)
{
    while (!names.empty()) {
        const std::size_t blank = std::min(names.find(' '), names.size());
        const auto child = entries.findChild(folder, names.substr(0, blank));
        if (child && !entries.isDirectory(*child)) {
            return true;
        }
        names.remove_prefix(std::min(blank + 1, names.size()));
    }
    return false;
}

/// One pass over a snapshot.
class EvidenceSearch {
public:
    explicit EvidenceSearch(const SnapshotEntries& entries) : entries_(entries) {}

    std::vector<Location> run()
    {
        for (const Row& row : table) {
            if (row.place == Place::home) {
                follow(entries_, SnapshotEntries::noIndex, row.pattern, [&](Index index) {
                    found_.push_back({index, &row});
                });
            }
        }
        for (const std::string_view pattern : keptWhole) {
            follow(entries_, SnapshotEntries::noIndex, pattern,
                   [&](Index index) { kept_.push_back(index); });
        }
        std::sort(kept_.begin(), kept_.end());
        for (Index index = 0; index < entries_.size(); ++index) {
            look(index);
        }
        return topmost();
    }

private:
    void look(Index index)
    {
        const std::string_view name = entries_.name(index);
        if (!entries_.isDirectory(index)) {
            if (name == cacheTag && entries_.parent(index) != SnapshotEntries::noIndex) {
                add(entries_.parent(index), table.back());
            }
            return;
        }
        for (const Row& row : rowsOf(name)) {
            if (name == lastComponent(row.pattern) && holds(index, row)) {
                add(index, row);
            }
        }
    }

    /// The rows for any place whose last component begins with the name's first letter.
    static std::span<const Row> rowsOf(std::string_view name)
    {
        constexpr std::string_view firstLetters = "_.dtbvc";
        return !name.empty() && firstLetters.find(name.front()) != std::string_view::npos
                   ? anywhere()
                   : std::span<const Row>();
    }

    static std::span<const Row> anywhere()
    {
        const auto* const first = std::find_if(table.begin(), table.end() - 1, [](const Row& row) {
            return row.place == Place::anywhere;
        });
        return {first, table.end() - 1};
    }

    static std::string_view lastComponent(std::string_view pattern)
    {
        return pattern.substr(pattern.rfind('/') + 1);
    }

    [[nodiscard]] bool holds(Index index, const Row& row) const
    {
        const Index parent = entries_.parent(index);
        if (const std::size_t slash = row.pattern.rfind('/'); slash != std::string_view::npos) {
            return parent != SnapshotEntries::noIndex
                   && entries_.name(parent) == row.pattern.substr(0, slash);
        }
        switch (row.proof) {
        case Proof::none:
            return true;
        case Proof::beside:
            return hasFile(entries_, parent, row.proofNames);
        case Proof::inside:
            break;
        }
        return hasFile(entries_, index, row.proofNames);
    }

    void add(Index index, const Row& row)
    {
        if (!std::binary_search(kept_.begin(), kept_.end(), index)) {
            found_.push_back({index, &row});
        }
    }

    std::vector<Location> topmost()
    {
        // Of two rows for one place the earlier in the table tells more.
        std::sort(found_.begin(), found_.end(), [](const Location& a, const Location& b) {
            return a.index != b.index ? a.index < b.index : a.row < b.row;
        });
        std::vector<Location> result;
        Index end = 0;
        for (const Location& location : found_) {
            if (location.index >= end) {
                result.push_back(location);
                end = entries_.subtreeEnd(location.index);
            }
        }
        return result;
    }

    const SnapshotEntries& entries_;
    std::vector<Location> found_;
    std::vector<Index> kept_;
};

/// Whether the last components of `path` are those of `pattern`.
bool isEndOf(std::string_view path, std::string_view pattern)
{
    while (true) {
        const std::size_t inPath = path.rfind('/');
        const std::size_t inPattern = pattern.rfind('/');
        const std::string_view wanted = pattern.substr(inPattern + 1);
        const std::string_view name = path.substr(inPath + 1);
        if (name.empty() || (wanted != "*" && wanted != name)) {
            return false;
        }
        if (inPattern == std::string_view::npos) {
            return true;
        }
        if (inPath == std::string_view::npos) {
            return false;
        }
        path = path.substr(0, inPath);
        pattern = pattern.substr(0, inPattern);
    }
}

}  // namespace

std::span<const Row> rows()
{
    return table;
}

std::vector<Location> locations(const SnapshotEntries& entries)
{
    return EvidenceSearch(entries).run();
}

std::string_view story(std::string_view path)
{
    const auto speaks = [&](const Row& row) {
        return row.pattern != anyName && isEndOf(path, row.pattern);
    };
    const auto* const row = std::find_if(table.begin(), table.end(), speaks);
    return row == table.end() ? std::string_view() : row->story;
}

}  // namespace gruk::DesktopEvidence
