#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace gruk {

/// The vocabularies of a shield. The order of the cases is part of the format: a draw picks a case
/// by its position.
enum class FieldShape : std::uint8_t { round, kite, banner, square };
enum class Division : std::uint8_t { plain, halved, striped, chevron };
enum class Charge : std::uint8_t { disk, lantern, tree, mountain, star, tusk, key, acorn };
/// A name and no more: the palette in force decides its colour.
enum class Tincture : std::uint8_t {
    fern,
    fernDark,
    blue,
    yellow,
    red,
    ink,
    terracotta,
    teal,
    plum,
    olive,
    slate,
    sand,
};
enum class Species : std::uint8_t { gruk, dragon, fairy, human, wizard };

inline constexpr std::size_t tinctureCount = 12;

/// The case names, which are also the stored forms.
[[nodiscard]] std::string_view rawString(FieldShape shape);
[[nodiscard]] std::string_view rawString(Division division);
[[nodiscard]] std::string_view rawString(Charge charge);
[[nodiscard]] std::string_view rawString(Tincture tincture);
[[nodiscard]] std::string_view rawString(Species species);

/// The case of that name, letter for letter; none for any other text.
[[nodiscard]] std::optional<FieldShape> fieldShape(std::string_view rawString);
[[nodiscard]] std::optional<Division> division(std::string_view rawString);
[[nodiscard]] std::optional<Charge> charge(std::string_view rawString);
[[nodiscard]] std::optional<Tincture> tincture(std::string_view rawString);
[[nodiscard]] std::optional<Species> species(std::string_view rawString);

/// A realm's shield. A plain value.
struct RealmIdentity {
    FieldShape shape = FieldShape::round;
    Division division = Division::plain;
    Tincture primary = Tincture::fern;
    Tincture secondary = Tincture::fern;
    Charge charge = Charge::disk;
    Species species = Species::gruk;

    /// The identity of a path's exact bytes: the same on every launch and machine. The two
    /// tinctures of a derived identity always differ.
    [[nodiscard]] static RealmIdentity derive(std::string_view path);

    friend bool operator==(const RealmIdentity&, const RealmIdentity&) = default;
};

}  // namespace gruk
