#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace gruk::benchmarks {

/// What one side of a benchmark measured, by name: "seconds" and perhaps more.
using Figures = std::map<std::string, double>;

/// Runs this program once more, as `--side` and `arguments`, and reads the figures that it prints.
/// Throws when it fails.
[[nodiscard]] Figures runSide(const std::vector<std::string>& arguments);

/// Runs another program with nothing to read and nowhere to print, and returns the seconds from
/// its start to its end; none when it is not installed. Throws when it fails.
[[nodiscard]] std::optional<double> runPeer(const std::vector<std::string>& command);

/// Prints figures for `runSide` to read.
void printFigures(const Figures& figures);

/// Seconds of a clock that only goes forward.
[[nodiscard]] double monotonicSeconds();

}  // namespace gruk::benchmarks
