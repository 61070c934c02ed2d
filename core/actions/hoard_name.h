#pragma once

#include <set>
#include <string>
#include <string_view>

/// How a Hoard is named. Pure; any thread.

namespace gruk {

/// What stands in the name of every Hoard, between its folder's name and the day.
inline constexpr std::string_view hoardMark = " Hoard — ";

/// "Desktop Hoard — 15 Nov 2026" for the folder name "Desktop".
[[nodiscard]] std::string hoardName(std::string_view folderName, std::string_view day);

/// `name` where it is free, else with " (2)", " (3)" and so on behind it. Names are compared byte
/// for byte.
[[nodiscard]] std::string uniqueName(const std::string& name, const std::set<std::string>& taken);

}  // namespace gruk
