#include "app/theme/theme.h"

#include <array>
#include <exception>
#include <utility>

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>

#include "app/desktop/desktop_appearance.h"
#include "app/model/setting_keys.h"
#include "platform/settings/user_defaults.h"

namespace gruk {

namespace {

struct FontSpec {
    int pixelSize;
    QFont::Weight weight;
    double tracking;
};

constexpr std::array fontSpecs = {
    FontSpec{11, QFont::Bold, 0.8},    // eyebrow
    FontSpec{11, QFont::Medium, 0},    // small
    FontSpec{12, QFont::Medium, 0},    // detail
    FontSpec{13, QFont::Medium, 0},    // body
    FontSpec{13, QFont::DemiBold, 0},  // bodyStrong
    FontSpec{15, QFont::DemiBold, 0},  // lead
    FontSpec{18, QFont::Bold, 0},      // sectionTitle
    FontSpec{18, QFont::Black, 1.1},   // brand
    FontSpec{24, QFont::Bold, 0},      // value
    FontSpec{32, QFont::Bold, 0},      // pageTitle
};

/// The rounded face where it is installed, then the desktop's own. Its medium weight is packaged
/// as a family of its own.
QStringList families(QFont::Weight weight)
{
    QStringList list;
    if (weight == QFont::Medium) {
        list.append(QStringLiteral("Quicksand Medium"));
    }
    list.append(QStringLiteral("Quicksand"));
    list.append(QFontDatabase::systemFont(QFontDatabase::GeneralFont).family());
    return list;
}

}  // namespace

ColourScheme colourScheme(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness()
                   < palette.color(QPalette::WindowText).lightness()
               ? ColourScheme::dark
               : ColourScheme::light;
}

Theme::Theme(QObject* parent) : QObject(parent), scheme_(colourScheme(QGuiApplication::palette()))
{
    qGuiApp->installEventFilter(this);
}

void Theme::followPreferences(UserDefaults& preferences)
{
    preferences_ = &preferences;
    readPreferences();
}

void Theme::readPreferences()
{
    if (preferences_ != nullptr) {
        const auto text = [this](std::string_view key) {
            return preferences_->text(key).value_or(std::string());
        };
        choose(appThemeNamed(text(SettingKeys::appTheme)),
               paletteThemeNamed(text(SettingKeys::paletteTheme)));
    }
}

void Theme::followDesktop(const DesktopAppearance& desktop)
{
    connect(&desktop, &DesktopAppearance::changed, this,
            [this, &desktop] { readDesktop(desktop); });
    readDesktop(desktop);
}

void Theme::readDesktop(const DesktopAppearance& desktop)
{
    hasReducedMotion_ = desktop.hasReducedMotion();
    desktopScheme_ = desktop.scheme();
    followSystem();
}

void Theme::setAppTheme(AppTheme appTheme)
{
    if (appTheme != appTheme_) {
        choose(appTheme, paletteTheme_);
        save(SettingKeys::appTheme, rawName(appTheme));
    }
}

void Theme::setPaletteTheme(AppPaletteTheme palette)
{
    if (palette != paletteTheme_) {
        choose(appTheme_, palette);
        save(SettingKeys::paletteTheme, rawName(palette));
    }
}

void Theme::choose(AppTheme appTheme, AppPaletteTheme palette)
{
    const bool isAnother = appTheme != appTheme_ || palette != paletteTheme_;
    appTheme_ = appTheme;
    paletteTheme_ = palette;
    scheme_ = schemeInForce();
    if (isAnother) {
        Q_EMIT changed();
    }
}

void Theme::save(std::string_view key, std::string_view value)
{
    if (preferences_ == nullptr) {
        return;
    }
    try {
        preferences_->setText(key, value);
    } catch (const std::exception& error) {
        qWarning("Gruk: failed to keep the look: %s", error.what());
    }
}

QColor Theme::colour(Role role, double opacity) const
{
    QColor colour = QColor::fromRgb(paletteColour(role, paletteTheme_, scheme_));
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

QFont Theme::font(TextStyle style) const
{
    const FontSpec& form = fontSpecs[static_cast<std::size_t>(style)];
    QFont font;
    font.setFamilies(families(form.weight));
    font.setPixelSize(form.pixelSize);
    font.setWeight(form.weight);
    if (style == TextStyle::eyebrow) {
        font.setCapitalization(QFont::AllUppercase);
    }
    if (form.tracking > 0) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, form.tracking);
    }
    return font;
}

int Theme::duration(int milliseconds) const
{
    return hasReducedMotion_ ? 0 : milliseconds;
}

QPalette Theme::windowPalette() const
{
    QPalette palette;
    palette.setColor(QPalette::Window, colour(Role::paper));
    palette.setColor(QPalette::WindowText, colour(Role::ink));
    palette.setColor(QPalette::Base, colour(Role::paperCard));
    palette.setColor(QPalette::AlternateBase, colour(Role::paperInset));
    palette.setColor(QPalette::ToolTipBase, colour(Role::paperCard));
    palette.setColor(QPalette::ToolTipText, colour(Role::ink));
    palette.setColor(QPalette::PlaceholderText, colour(Role::ink, Strength::quiet));
    palette.setColor(QPalette::Text, colour(Role::ink));
    palette.setColor(QPalette::Button, colour(Role::paperCard));
    palette.setColor(QPalette::ButtonText, colour(Role::ink));
    palette.setColor(QPalette::Link, colour(Role::accent));
    palette.setColor(QPalette::Highlight, colour(Role::accent));
    palette.setColor(QPalette::HighlightedText, colour(Role::paperCard));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colour(Role::ink, Strength::disabled));
    }
    return palette;
}

bool Theme::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) {
        followSystem();
    } else if (watched == qGuiApp && event->type() == QEvent::ApplicationActivate) {
        readPreferences();
    }
    return QObject::eventFilter(watched, event);
}

ColourScheme Theme::schemeInForce() const
{
    switch (appTheme_) {
    case AppTheme::light:
        return ColourScheme::light;
    case AppTheme::dark:
        return ColourScheme::dark;
    case AppTheme::system:
        break;
    }
    return desktopScheme_.value_or(colourScheme(QGuiApplication::palette()));
}

void Theme::followSystem()
{
    const ColourScheme scheme = schemeInForce();
    if (std::exchange(scheme_, scheme) != scheme) {
        Q_EMIT changed();
    }
}

}  // namespace gruk
