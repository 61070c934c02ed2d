#pragma once

/// The few lengths of the window, in logical pixels. Screens name these and no figures.
namespace gruk::Measure {

/// The steps of space.
inline constexpr int hair = 4;
inline constexpr int small = 8;
inline constexpr int medium = 12;
inline constexpr int large = 16;
inline constexpr int wide = 24;
inline constexpr int huge = 32;

inline constexpr int pageMargin = wide;
inline constexpr int rowGap = large;
inline constexpr int cardPadding = large;
inline constexpr int columnWidth = 880;
/// Below this width, what stands side by side stacks.
inline constexpr int stackingWidth = 700;

inline constexpr int sidebarWidth = 248;
/// The Gruk beside his name.
inline constexpr int brandHero = 52;
/// The Gruk beside a few words of his.
inline constexpr int noteHero = 96;
/// The shield at the head of a realm's page.
inline constexpr int headerShield = 72;
inline constexpr int realmRowHeight = 48;
inline constexpr int realmRowShield = 30;
inline constexpr int buttonHeight = 32;
inline constexpr int primaryButtonHeight = 38;
inline constexpr int smallestTarget = 24;

inline constexpr int iconSize = 22;
inline constexpr int smallIconSize = 16;
inline constexpr int largeIconSize = 24;

/// The line around what stands on the paper: cards, buttons, fields.
inline constexpr double outline = 1.2;
inline constexpr int bannerBar = 4;
inline constexpr int activeBar = 3;
inline constexpr int focusRing = 2;
inline constexpr int focusGap = 2;
inline constexpr int shadowOffset = 3;

inline constexpr int defaultWindowWidth = 1120;
inline constexpr int defaultWindowHeight = 760;
inline constexpr int smallestWindowWidth = 820;
inline constexpr int smallestWindowHeight = 560;
/// What a size or a change may take at the right of a row.
inline constexpr int figureWidth = 72;
/// How wide the text of a dialog runs.
inline constexpr int dialogTextWidth = 380;

/// How long a disclosure opens and a choice slides, and a page changes; by `Theme::duration`.
inline constexpr int slideMilliseconds = 160;
inline constexpr int pageMilliseconds = 280;

}  // namespace gruk::Measure

/// The strengths in which ink is used, and paper over what waits in the dark.
namespace gruk::Strength {

inline constexpr double full = 1.0;
inline constexpr double quiet = 0.64;
inline constexpr double outline = 0.16;
/// Over a window that has to wait.
inline constexpr double dimming = 0.25;
inline constexpr double dimmingAtNight = 0.6;
inline constexpr double edge = 0.12;
inline constexpr double divider = 0.08;
inline constexpr double shadow = 0.07;
inline constexpr double disabled = 0.45;
inline constexpr double disconnected = 0.55;
inline constexpr double card = 0.88;
inline constexpr double pressed = 0.88;

}  // namespace gruk::Strength
