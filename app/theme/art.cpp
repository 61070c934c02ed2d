#include "app/theme/art.h"

#include <algorithm>
#include <array>
#include <optional>

#include <QAccessibleWidget>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QSvgRenderer>

#include "app/theme/icons.h"
#include "app/theme/resources.h"

namespace gruk {

namespace {

/// The artNames of the drawings, in the order of the cases.
constexpr std::array<const char*, artCount> artNames = {
    "gruk_hero",         "gruk_state_map",       "gruk_state_report",
    "gruk_state_patrol", "gruk_state_celebrate", "gruk_state_attack",
};
constexpr QSize usualArtSize{240, 240};

std::optional<Role> roleOfCommittedColour(QRgb colour)
{
    for (std::size_t index = 0; index < roleCount; ++index) {
        const auto role = static_cast<Role>(index);
        if (paletteColour(role, AppPaletteTheme::woodland, ColourScheme::light) == colour) {
            return role;
        }
    }
    return std::nullopt;
}

/// The role that is as light at night as `role` is by day.
Role atNight(Role role)
{
    switch (role) {
    case Role::ink:
        return Role::paperInset;
    case Role::paperInset:
    case Role::paper:
    case Role::paperCard:
        return Role::ink;
    default:
        return role;
    }
}

QPixmap renderedArt(Art art, const QSize& pixels, const Theme& theme)
{
    const QString name = QLatin1String(artNames[static_cast<std::size_t>(art)]);
    QSvgRenderer renderer(recoloured(themeResource(QStringLiteral("art/%1.svg").arg(name)),
                                     theme.paletteTheme(), theme.scheme()));
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter drawing(&pixmap);
    renderer.render(&drawing);
    return pixmap;
}

/// One without a name says nothing that the words beside it do not.
QAccessibleInterface* accessibleArt(const QString&, QObject* object)
{
    auto* view = qobject_cast<ArtView*>(object);
    return view == nullptr || view->accessibleName().isEmpty()
               ? nullptr
               : new QAccessibleWidget(view, QAccessible::Graphic);
}

}  // namespace

QByteArray recoloured(const QByteArray& svg, AppPaletteTheme palette, ColourScheme scheme)
{
    static const QRegularExpression colours(
        QStringLiteral("\"(#[0-9A-Fa-f]{6})\"([^<>]*class=\"steady\")?"));
    const QString text = QString::fromUtf8(svg);
    QString result;
    qsizetype end = 0;
    for (auto matches = colours.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const std::optional<Role> committed =
            roleOfCommittedColour(QColor(match.captured(1)).rgba());
        if (committed) {
            const bool keepsLightness = match.hasCaptured(2) && scheme == ColourScheme::dark;
            const Role role = keepsLightness ? atNight(*committed) : *committed;
            result += QStringView(text).mid(end, match.capturedStart(1) - end);
            result += QColor(paletteColour(role, palette, scheme)).name();
            end = match.capturedEnd(1);
        }
    }
    result += QStringView(text).mid(end);
    return result.toUtf8();
}

void paintArt(QPainter& painter, const QRectF& bounds, Art art, const Theme& theme)
{
    const double side = std::min(bounds.width(), bounds.height());
    const double ratio = pixelRatio(painter);
    const QSize pixels = QSizeF(side * ratio, side * ratio).toSize();
    if (pixels.isEmpty()) {
        return;
    }
    const QString key = QStringLiteral("gruk-art-%1-%2-%3-%4-%5")
                            .arg(static_cast<int>(art))
                            .arg(static_cast<int>(theme.paletteTheme()))
                            .arg(static_cast<int>(theme.scheme()))
                            .arg(pixels.width())
                            .arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = renderedArt(art, pixels, theme);
        pixmap.setDevicePixelRatio(ratio);
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(bounds.center() - QPointF(side, side) / 2, pixmap);
}

ArtView::ArtView(Theme& theme, Art art, const QString& accessibleName, QWidget* parent)
    : QWidget(parent), theme_(theme), art_(art)
{
    // The toolkit keeps one of each.
    QAccessible::installFactory(accessibleArt);
    setAccessibleName(accessibleName);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ArtView::setArt(Art art)
{
    art_ = art;
    update();
}

QSize ArtView::sizeHint() const
{
    return usualArtSize;
}

void ArtView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintArt(painter, rect(), art_, theme_);
}

QIcon programIcon()
{
    QSvgRenderer renderer(themeResource(QStringLiteral("art/program.svg")));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter drawing(&pixmap);
        renderer.render(&drawing);
        drawing.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace gruk
