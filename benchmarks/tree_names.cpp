#include "benchmarks/tree_names.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <span>
#include <string_view>

namespace gruk::benchmarks {

namespace {

constexpr std::array<std::string_view, 60> words = {
    "archive", "autumn",   "backup",  "balance", "bicycle",  "board",   "bridge",  "budget",
    "camera",  "catalog",  "client",  "config",  "contract", "cover",   "delta",   "design",
    "draft",   "engine",   "export",  "family",  "field",    "garden",  "harvest", "holiday",
    "image",   "index",    "invoice", "kitchen", "lecture",  "letter",  "library", "manual",
    "meadow",  "memo",     "model",   "notes",   "order",    "outline", "panel",   "paper",
    "photo",   "plan",     "poster",  "project", "recipe",   "record",  "report",  "river",
    "sample",  "schedule", "script",  "session", "sketch",   "summary", "survey",  "table",
    "ticket",  "video",    "weather", "winter"};

constexpr std::array<std::string_view, 36> foreignWords = {
    "Übersicht",    "Größe",     "Müller",   "café",
    "résumé",       "São Paulo", "niño",     "Ærø",
    "Žižek",        "łódź",      "İstanbul", "e\u0301te\u0301",
    "Отчёт",        "фото",      "Москва",   "зима",
    "Ёлка",         "Ελλάδα",    "σημείωση", "Αθήνα",
    "写真",         "東京",      "报告",     "文档",
    "プロジェクト", "メモ",      "한국어",   "사진",
    "🎉 party",     "🏔",        "❤️",        "👩‍💻 code",
    "日本語 2",     "naïve",     "Ångström", "ﬁne"};

constexpr std::array<std::string_view, 16> programFolders = {
    "src",    "include", "lib",  "bin",     "build", "node_modules", "tests", "docs",
    "assets", "images",  "dist", ".config", ".git",  "objects",      "cache", "Downloads"};

constexpr std::array<std::string_view, 40> extensions = {
    ".txt", ".txt", ".md",  ".md",   ".pdf",  ".pdf",  ".png", ".png", ".PNG", ".jpg",
    ".jpg", ".jpg", ".JPG", ".jpeg", ".heic", ".mov",  ".mp4", ".mp3", ".m4a", ".zip",
    ".gz",  ".tar", ".dmg", ".pkg",  ".docx", ".xlsx", ".key", ".cpp", ".cpp", ".h",
    ".h",   ".js",  ".js",  ".json", ".json", ".o",    ".py",  ".log", ".css", ".html"};

std::string_view pick(SeededGenerator& generator, std::span<const std::string_view> list)
{
    return generator.pick(list);
}

std::string word(SeededGenerator& generator)
{
    std::string text(pick(generator, words));
    const std::uint64_t letterCase = generator.bounded(8);
    if (letterCase < 3) {
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    } else if (letterCase == 3) {
        for (char& letter : text) {
            letter = static_cast<char>(letter - 'a' + 'A');
        }
    }
    return text;
}

std::string number(SeededGenerator& generator, std::uint64_t limit)
{
    return std::to_string(generator.bounded(limit));
}

std::string digits(SeededGenerator& generator, const char* format, std::uint64_t limit)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format,
                  static_cast<unsigned>(generator.bounded(limit)));
    return text.data();
}

/// Joins parts that were drawn in the order in which they stand, on every compiler.
std::string joined(std::initializer_list<std::string> parts)
{
    std::string text;
    for (const std::string& part : parts) {
        text += part;
    }
    return text;
}

std::string plainStem(SeededGenerator& generator)
{
    switch (generator.bounded(10)) {
    case 0:
        return word(generator);
    case 1:
        return joined({word(generator), " ", word(generator)});
    case 2:
        return joined({word(generator), "_", number(generator, 200)});
    case 3:
        return joined({"IMG_", digits(generator, "%04u", 10'000)});
    case 4:
        return joined({word(generator), "-", word(generator), "-", number(generator, 30)});
    case 5:
        return joined({word(generator), " (", number(generator, 9), ")"});
    case 6:
        return joined({word(generator), " 20", digits(generator, "%02u", 27), "-",
                       digits(generator, "%02u", 12)});
    case 7:
        return joined({"Screenshot 2024-", digits(generator, "%02u", 12), " at ",
                       digits(generator, "%02u", 24), ".", digits(generator, "%02u", 60)});
    case 8:
        return joined({word(generator), number(generator, 5'000)});
    default:
        return digits(generator, "%08x", 0xffff'ffff);
    }
}

std::string stem(SeededGenerator& generator)
{
    if (generator.bounded(12) != 0) {
        return plainStem(generator);
    }
    std::string text(pick(generator, foreignWords));
    if (generator.bounded(2) == 0) {
        text += " " + word(generator);
    }
    text += " " + number(generator, 100);
    return text;
}

}  // namespace

std::string folderName(SeededGenerator& generator)
{
    if (generator.bounded(6) == 0) {
        return std::string(pick(generator, programFolders));
    }
    return stem(generator);
}

std::string fileName(SeededGenerator& generator)
{
    std::string text = stem(generator);
    if (generator.bounded(16) != 0) {
        text += pick(generator, extensions);
    }
    return text;
}

std::string numbered(const std::string& name, unsigned number)
{
    const std::size_t point = name.rfind('.');
    const std::size_t end = point == std::string::npos || point == 0 ? name.size() : point;
    return name.substr(0, end) + " " + std::to_string(number) + name.substr(end);
}

}  // namespace gruk::benchmarks
