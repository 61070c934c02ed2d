#include "core/patrol/finding_copy.h"

#include <unordered_map>

#include "core/patrol/desktop_evidence.h"

namespace gruk::FindingCopy {

namespace {

using Stories = std::unordered_map<std::string_view, std::string_view>;

/// What made the folders that the Gruk knows by name, and what brings them back.
const Stories& storiesByName()
{
    static const Stories stories = {
        {"node_modules",
         "Created by `npm install` or `yarn` — holds this project's downloaded JavaScript "
         "dependencies, and `npm install` rebuilds it from `package.json` any time it's missing."},
        {".venv",
         "Created by Python's `venv` module — holds this project's isolated Python interpreter "
         "and packages, and `python -m venv` rebuilds it from `requirements.txt` in a few "
         "seconds."},
        {"venv",
         "Created by Python's `virtualenv` or `venv` tool — holds this project's isolated Python "
         "interpreter and packages, and recreating it rebuilds everything from "
         "`requirements.txt`."},
        {"Pods",
         "Created by CocoaPods — holds the third-party libraries this Xcode project depends on, "
         "and `pod install` rebuilds it from the `Podfile`."},
        {"DerivedData",
         "Created by Xcode itself — holds build products, indexes, and caches for every project "
         "it's built, and Xcode rebuilds whatever it needs the next time you build."},
        {".git",
         "This is the project's Git repository — every commit, branch, and piece of history "
         "lives here, not just a cache. Unlike the others on this list, deleting it doesn't "
         "rebuild automatically: the history goes with it."},
        {"__pycache__",
         "Created automatically by the Python interpreter — holds compiled bytecode for faster "
         "imports, and Python regenerates it the next time these files run."},
        {"target",
         "Created by Cargo (Rust) or Maven (Java) — holds this project's compiled build output, "
         "and a fresh `cargo build` or `mvn package` rebuilds it from source."},
        {"build",
         "Created by a build tool such as Gradle, Xcode, or Make — holds this project's compiled "
         "output, and the next build regenerates it from source."},
        {"dist",
         "Created by a JavaScript bundler such as webpack, Vite, or Rollup — holds the packaged, "
         "ready-to-ship output, and the next build command regenerates it from source."},
        {".next",
         "Created by Next.js — holds this project's build cache and compiled pages, and `next "
         "build` (or `next dev`) rebuilds it from source."},
        {"vendor",
         "Created by a package manager such as Composer (PHP) or Go modules — holds this "
         "project's downloaded third-party code, and reinstalling dependencies rebuilds it from "
         "the project's manifest."},
        {".gradle",
         "Created by Gradle — holds build caches and downloaded dependencies for this project, "
         "and the next Gradle build rebuilds whatever it needs."},
        {".cargo",
         "Created by Cargo (Rust) — holds downloaded crate sources and the global registry "
         "cache, and `cargo build` re-downloads anything that's missing."},
        {".tox",
         "Created by tox — holds isolated Python test environments for this project, and running "
         "`tox` again rebuilds them from `tox.ini`."},
    };
    return stories;
}

std::string_view lastPathComponent(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return path.substr(path.rfind('/') + 1);
}

std::string_view storyOf(ReviewFinding::Reason reason)
{
    switch (reason) {
    case ReviewFinding::Reason::rapidGrowth:
        return "This grew fast between patrols. On its own that's not a problem — just worth a "
               "look while it's fresh in mind.";
    case ReviewFinding::Reason::duplicateDownload:
        return "Two files in the same folder, matching in size down to the byte, with "
               "near-identical names. That's what a duplicate download looks like.";
    case ReviewFinding::Reason::oldInstaller:
        return "A disk image or installer nobody's touched in over 30 days. The app it installed "
               "is already on your computer — the installer's done its job.";
    case ReviewFinding::Reason::regenerableCache:
        return "A cache or build folder the Gruk recognises. Whatever made it will rebuild what "
               "it needs next time it runs — clearing it just costs a little time on the next "
               "launch.";
    }
    return {};
}

}  // namespace

std::string_view whyFlagged(ReviewFinding::Reason reason, std::string_view path)
{
    const Stories& stories = storiesByName();
    const auto found = stories.find(lastPathComponent(path));
    if (found != stories.end()) {
        return found->second;
    }
    if (reason == ReviewFinding::Reason::regenerableCache) {
        if (const std::string_view story = DesktopEvidence::story(path); !story.empty()) {
            return story;
        }
    }
    return storyOf(reason);
}

std::string_view confidenceNote(double confidence)
{
    constexpr double solid = 0.8;
    return confidence >= solid
               ? "The facts here are solid. The decision is still yours."
               : "Good evidence, not certainty — worth a glance before anything moves.";
}

}  // namespace gruk::FindingCopy
