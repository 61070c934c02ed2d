#pragma once

#include <optional>

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>

#include "app/theme/measures.h"
#include "app/theme/palette.h"

namespace gruk {

class DesktopAppearance;
class UserDefaults;

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

/// Colours by role and fonts by kind for every screen, in the palette and the scheme that the user
/// chose. One object for all windows, wired to each screen, which repaints by `changed`: a choice
/// shows at once in every open window. Main thread only.
///
/// Without preferences it follows the desktop, in woodland.
class Theme : public QObject {
    Q_OBJECT

public:
    explicit Theme(QObject* parent = nullptr);

    /// Takes both choices from there, now and each time the program comes to the front (another
    /// process may have changed them), and keeps them there. It must live as long as the theme.
    void followPreferences(UserDefaults& preferences);
    /// Takes scheme and motion from what the desktop says; what it leaves open, the toolkit's
    /// palette decides. It must live as long as the theme.
    void followDesktop(const DesktopAppearance& desktop);

    /// The scheme in force.
    [[nodiscard]] ColourScheme scheme() const { return scheme_; }
    /// What the user chose for it. The setters keep the choice in the preferences; where it cannot
    /// be written it holds until the program ends, and the log says so.
    [[nodiscard]] AppTheme appTheme() const { return appTheme_; }
    void setAppTheme(AppTheme appTheme);
    [[nodiscard]] AppPaletteTheme paletteTheme() const { return paletteTheme_; }
    void setPaletteTheme(AppPaletteTheme palette);

    [[nodiscard]] QColor colour(Role role, double opacity = Strength::full) const;
    [[nodiscard]] QFont font(TextStyle style) const;

    void setReducedMotion(bool isReduced) { hasReducedMotion_ = isReduced; }

    /// How long a movement of so many milliseconds takes: no time where the desktop asks for
    /// reduced motion.
    [[nodiscard]] int duration(int milliseconds) const;

    /// The palette for a window, so that the toolkit's own pieces in it look the part.
    [[nodiscard]] QPalette windowPalette() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// Some colour is another one now, or the user's choice of one.
    void changed();

private:
    void readPreferences();
    void readDesktop(const DesktopAppearance& desktop);
    void save(std::string_view key, std::string_view value);
    void choose(AppTheme appTheme, AppPaletteTheme palette);
    [[nodiscard]] ColourScheme schemeInForce() const;
    void followSystem();

    UserDefaults* preferences_ = nullptr;
    AppTheme appTheme_ = AppTheme::system;
    AppPaletteTheme paletteTheme_ = AppPaletteTheme::woodland;
    /// None where the desktop says nothing about it.
    std::optional<ColourScheme> desktopScheme_;
    ColourScheme scheme_ = ColourScheme::light;
    bool hasReducedMotion_ = false;
};

/// Whether a desktop with this palette shows dark windows.
[[nodiscard]] ColourScheme colourScheme(const QPalette& palette);

}  // namespace gruk
