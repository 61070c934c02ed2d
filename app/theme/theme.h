#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>

#include "app/theme/measures.h"
#include "app/theme/palette.h"

namespace gruk {

/// The kinds of text, each one font.
enum class TextStyle {
    /// Small capitals over a figure.
    eyebrow,
    small,
    detail,
    body,
    bodyStrong,
    lead,
    sectionTitle,
    brand,
    value,
    pageTitle,
};

/// Colours by role and fonts by kind for every screen, in the palette chosen and in the light or
/// dark of the desktop, which it follows by the application's palette. One object for all windows,
/// wired to each screen. Main thread only.
class Theme : public QObject {
    Q_OBJECT

public:
    explicit Theme(QObject* parent = nullptr);

    [[nodiscard]] ColourScheme scheme() const { return scheme_; }
    [[nodiscard]] AppPaletteTheme paletteTheme() const { return paletteTheme_; }
    void setPaletteTheme(AppPaletteTheme palette);

    [[nodiscard]] QColor colour(Role role, double opacity = Strength::full) const;
    [[nodiscard]] QFont font(TextStyle style) const;

    /// The palette for a window, so that the toolkit's own pieces in it look the part.
    [[nodiscard]] QPalette windowPalette() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// Some colour is another one now.
    void changed();

private:
    void followApplication();

    ColourScheme scheme_ = ColourScheme::light;
    AppPaletteTheme paletteTheme_ = AppPaletteTheme::woodland;
};

/// Whether a desktop with this palette shows dark windows.
[[nodiscard]] ColourScheme colourScheme(const QPalette& palette);

}  // namespace gruk
