#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/bench_files.h"
#include "benchmarks/bench_process.h"
#include "benchmarks/bench_sides.h"

// bench_patrol [--only KEY[,KEY]] DIR: how fast and how small a patrol of DIR is, as ratios
// between sides that take turns on the same machine. Progress goes to the error stream, one line
// of JSON to the output.

namespace gruk::benchmarks {

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 5;

/// The seconds (or bytes) of each side in one round; a side that could not run has none.
using Round = std::map<std::string, double>;

/// What is printed: its name, the sides that it needs, and its value in one round.
struct Key {
    std::string name;
    std::vector<std::string> sides;
    std::function<double(const Round&)> value;
};

std::function<double(const Round&)> ratio(const std::string& side, const std::string& base)
{
    return [=](const Round& round) { return round.at(side) / round.at(base); };
}

const std::vector<Key>& keys()
{
    static const std::vector<Key> all = {
        {"items", {"floor"}, [](const Round& round) { return round.at("items"); }},
        {"floor_seconds", {"floor"}, [](const Round& round) { return round.at("floor"); }},
        {"scan_over_floor", {"floor", "scan"}, ratio("scan", "floor")},
        {"attribute_floor_over_floor",
         {"floor", "attribute-floor"},
         ratio("attribute-floor", "floor")},
        {"scan_over_attribute_floor",
         {"attribute-floor", "scan"},
         ratio("scan", "attribute-floor")},
        {"scan_over_du", {"du", "scan"}, ratio("scan", "du")},
        {"order_over_floor", {"floor", "order"}, ratio("order", "floor")},
        {"patrol_over_ncdu", {"patrol", "ncdu"}, ratio("patrol", "ncdu")},
        {"patrol_over_gdu", {"patrol", "gdu"}, ratio("patrol", "gdu")},
        {"deep_over_copy",
         {"deep", "first", "copy"},
         [](const Round& round) {
             return round.at("deep") / (round.at("first") + round.at("copy"));
         }},
        {"decode_over_read", {"decode", "read"}, ratio("decode", "read")},
        {"encode_over_write", {"encode", "write"}, ratio("encode", "write")},
        {"bytes_per_entry",
         {"patrol"},
         [](const Round& round) { return round.at("peak_bytes") / round.at("entries"); }},
        {"history_over_pass", {"history", "pass"}, ratio("history", "pass")},
    };
    return all;
}

/// Runs the sides, each on fresh files where it writes any.
class Bench {
public:
    explicit Bench(std::string directory) : directory_(std::move(directory))
    {
        (void)runSide({"prepare", directory_, folder_.path()});
    }

    void run(const std::string& side, Round& round)
    {
        if (side == "du") {
            keep(round, side, runPeer({"du", "-s", directory_}));
        } else if (side == "ncdu") {
            keep(round, side, runPeer({"ncdu", "-0xo", scratch(), directory_}));
            fs::remove(scratch());
        } else if (side == "gdu") {
            keep(round, side, runPeer({"gdu", "-npc", directory_}));
        } else {
            runOurs(side, round);
        }
    }

private:
    static void keep(Round& round, const std::string& side, std::optional<double> seconds)
    {
        if (seconds) {
            round[side] = *seconds;
        }
    }

    void runOurs(const std::string& side, Round& round)
    {
        const Figures figures = runSide(commandOf(side));
        round[side] = figures.at("seconds");
        for (const char* more : {"items", "entries", "peak_bytes"}) {
            // Only the patrol with one snapshot before it tells of memory.
            if (figures.contains(more) && side != "deep" && side != "first") {
                round[more] = figures.at(more);
            }
        }
        fs::remove(scratch());
        fs::remove(worked());
    }

    std::vector<std::string> commandOf(const std::string& side)
    {
        const std::string one = folder_.path() + stores::one;
        const std::string deep = folder_.path() + stores::deep;
        if (side == "patrol") {
            fs::create_hard_link(one, worked());
            return {"patrol", directory_, worked()};
        }
        if (side == "deep") {
            fs::create_hard_link(deep, worked());
            return {"patrol", directory_, worked()};
        }
        if (side == "first") {
            return {"patrol", directory_, worked()};
        }
        if (side == "decode") {
            return {side, directory_, one};
        }
        if (side == "read") {
            return {side, one};
        }
        if (side == "encode" || side == "write") {
            return {side, one, scratch()};
        }
        if (side == "copy") {
            return {side, deep, scratch()};
        }
        if (side == "history") {
            return {side, directory_, deep};
        }
        if (side == "pass") {
            return {side, deep};
        }
        return {side, directory_};
    }

    [[nodiscard]] std::string scratch() const { return folder_.path() + "/scratch"; }
    /// A save puts a new file in its place, so a link to a prepared store serves every round.
    [[nodiscard]] std::string worked() const { return folder_.path() + stores::worked; }

    std::string directory_;
    TemporaryFolder folder_;
};

/// The median of the rounds' values; none when a round lacks one.
std::optional<double> median(const Key& key, const std::vector<Round>& measured)
{
    std::vector<double> values;
    for (const Round& round : measured) {
        try {
            values.push_back(key.value(round));
        } catch (const std::out_of_range&) {
            return std::nullopt;
        }
    }
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::vector<Round> measure(const std::string& directory, const std::vector<std::string>& sides)
{
    std::fprintf(stderr, "preparing\n");
    Bench bench(directory);
    std::vector<Round> measured;
    for (int number = 0; number <= rounds; ++number) {
        std::fprintf(stderr, number == 0 ? "warming up:" : "round %d of %d:", number, rounds);
        Round round;
        for (const std::string& side : sides) {
            bench.run(side, round);
            if (round.contains(side)) {
                std::fprintf(stderr, " %s %.3f s", side.c_str(), round.at(side));
            } else {
                std::fprintf(stderr, " %s is not installed", side.c_str());
            }
        }
        std::fprintf(stderr, "\n");
        if (number > 0) {
            measured.push_back(round);
        }
    }
    return measured;
}

void print(const std::vector<Key>& wanted, const std::vector<Round>& measured)
{
    std::string line = "{";
    for (const Key& key : wanted) {
        const std::optional<double> value = median(key, measured);
        char text[64] = "null";
        if (value) {
            const bool isCount = key.name == "items";
            std::snprintf(text, sizeof text, isCount ? "%.0f" : "%.4f", *value);
        }
        line += (line.size() > 1 ? ",\"" : "\"") + key.name + "\":" + text;
    }
    std::printf("%s}\n", line.c_str());
}

/// The keys asked for, with those that every line has; none when there is no such key.
std::optional<std::vector<Key>> select(std::string_view only)
{
    std::set<std::string> names = {"items", "floor_seconds"};
    while (!only.empty()) {
        const std::size_t comma = std::min(only.find(','), only.size());
        const std::string name(only.substr(0, comma));
        only.remove_prefix(std::min(comma + 1, only.size()));
        if (std::none_of(keys().begin(), keys().end(),
                         [&](const Key& key) { return key.name == name; })) {
            return std::nullopt;
        }
        names.insert(name);
    }
    std::vector<Key> wanted;
    std::copy_if(keys().begin(), keys().end(), std::back_inserter(wanted),
                 [&](const Key& key) { return names.contains(key.name); });
    return wanted;
}

int run(const std::string& directory, const std::vector<Key>& wanted)
{
    std::vector<std::string> sides;
    for (const Key& key : wanted) {
        for (const std::string& side : key.sides) {
            if (std::find(sides.begin(), sides.end(), side) == sides.end()) {
                sides.push_back(side);
            }
        }
    }
    print(wanted, measure(directory, sides));
    return 0;
}

int main(std::span<const std::string> arguments)
{
    if (arguments.size() > 1 && arguments[0] == "--side") {
        printFigures(measureSide(arguments.subspan(1)));
        return 0;
    }
    if (arguments.size() == 1 && !arguments[0].starts_with("--")) {
        return run(arguments[0], keys());
    }
    if (arguments.size() == 3 && arguments[0] == "--only") {
        if (const auto wanted = select(arguments[1])) {
            return run(arguments[2], *wanted);
        }
    }
    std::fprintf(stderr, "usage: bench_patrol [--only KEY[,KEY]] DIR\nkeys:");
    for (const Key& key : keys()) {
        std::fprintf(stderr, " %s", key.name.c_str());
    }
    std::fprintf(stderr, "\n");
    return 2;
}

}  // namespace

}  // namespace gruk::benchmarks

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        return gruk::benchmarks::main(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_patrol: %s\n", error.what());
        return 1;
    }
}
