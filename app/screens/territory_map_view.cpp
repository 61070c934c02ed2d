#include "app/screens/territory_map_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

#include "app/screens/territory_copy.h"
#include "app/screens/territory_map_accessible.h"
#include "app/theme/card_painter.h"
#include "app/theme/icons.h"
#include "app/theme/key_press.h"
#include "app/theme/land_painter.h"

namespace gruk {

namespace {

constexpr int largestSide = 560;
/// The sea around the land.
constexpr int seaMargin = Measure::large;
/// Borders wobble out of the square a little.
constexpr int pictureMargin = 3;

double sideFor(int width)
{
    return std::clamp(width - 2 * seaMargin, 0, largestSide);
}

}  // namespace

TerritoryMapView::TerritoryMapView(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    installTerritoryMapAccessible();
    setObjectName(QStringLiteral("territoryMap"));
    setAccessibleName(QStringLiteral("Map of your territories"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, &TerritoryMapView::forgetPicture);
}

void TerritoryMapView::setSummaries(std::vector<RealmSummary> summaries)
{
    if (summaries == summaries_) {
        return;
    }
    const std::size_t place = current_;
    const auto current = pathOf(current_);
    const auto asked = pathOf(asked_);
    const auto pressed = pathOf(pressed_);
    summaries_ = std::move(summaries);
    map_ = territoryMap(summaries_);
    const std::size_t last = std::max<std::size_t>(map_.territories.size(), 1) - 1;
    current_ = territoryOf(current).value_or(std::min(place, last));
    asked_ = territoryOf(asked);
    pressed_ = territoryOf(pressed);
    hover(pointer_ ? territoryAtPoint(*pointer_) : std::nullopt);
    placePlaceholder();
    placeLabels();
    forgetPicture();
    QAccessibleEvent other(this, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&other);
    if (focused() && (current_ != place || pathOf(current_) != current)) {
        tellFocus();
    }
    Q_EMIT highlightedChanged();
}

std::optional<std::string> TerritoryMapView::pathOf(std::optional<std::size_t> territory) const
{
    return territory && *territory < map_.territories.size()
               ? std::optional(realmOf(*territory).path)
               : std::nullopt;
}

std::optional<std::size_t>
TerritoryMapView::territoryOf(const std::optional<std::string>& path) const
{
    for (std::size_t index = 0; path && index < map_.territories.size(); ++index) {
        if (realmOf(index).path == *path) {
            return index;
        }
    }
    return std::nullopt;
}

QRectF TerritoryMapView::land() const
{
    const double side = sideFor(width());
    // On whole pixels, so that what was painted once stays sharp wherever it is put.
    return {std::floor(cardBody(rect()).center().x() - side / 2), seaMargin, side, side};
}

const RealmSummary& TerritoryMapView::realmOf(std::size_t territory) const
{
    return summaries_.at(map_.territories.at(territory).summary);
}

QString TerritoryMapView::nameOf(std::size_t territory) const
{
    return TerritoryCopy::nameAndSize(realmOf(territory));
}

QRect TerritoryMapView::boundsOf(std::size_t territory) const
{
    const QRectF square = land();
    return territoryPath(map_.territories.at(territory), square.width())
        .boundingRect()
        .translated(square.topLeft())
        .toAlignedRect();
}

std::optional<std::size_t> TerritoryMapView::territoryAtPoint(const QPointF& point) const
{
    const QRectF square = land();
    return territoryAt(map_, point - square.topLeft(), square.width());
}

std::optional<std::size_t> TerritoryMapView::focused() const
{
    return hasFocus() && current_ < map_.territories.size() ? std::optional(current_)
                                                            : std::nullopt;
}

std::optional<std::size_t> TerritoryMapView::highlighted() const
{
    if (hovered_) {
        return hovered_;
    }
    return showsFocus_ && focused() ? focused() : asked_;
}

void TerritoryMapView::highlightRealm(std::optional<std::size_t> summary)
{
    asked_.reset();
    for (std::size_t index = 0; summary && index < map_.territories.size(); ++index) {
        if (map_.territories[index].summary == *summary) {
            asked_ = index;
        }
    }
    update();
}

void TerritoryMapView::select(std::size_t territory)
{
    // A copy, since whoever hears of it may show other summaries.
    const RealmSummary realm = realmOf(territory);
    Q_EMIT selected(realm);
}

void TerritoryMapView::setPlaceholder(QWidget* placeholder)
{
    placeholder_ = placeholder;
    placeholder_->setParent(this);
    placeholder_->setAttribute(Qt::WA_TransparentForMouseEvents);
    placePlaceholder();
}

void TerritoryMapView::placePlaceholder()
{
    if (placeholder_ != nullptr) {
        placeholder_->setVisible(map_.territories.empty());
        placeholder_->setGeometry(rect());
    }
}

QSize TerritoryMapView::sizeHint() const
{
    return {largestSide + 2 * seaMargin, largestSide + 2 * seaMargin};
}

QSize TerritoryMapView::minimumSizeHint() const
{
    // Any width will do; the height follows it.
    return {Measure::realmRowHeight, Measure::realmRowHeight};
}

void TerritoryMapView::placeLabels()
{
    labels_ = territoryLabels(map_, summaries_, land().width(), theme_);
}

void TerritoryMapView::forgetPicture()
{
    picture_ = QPixmap();
    update();
}

void TerritoryMapView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    setFixedHeight(static_cast<int>(sideFor(width())) + 2 * seaMargin);
    placePlaceholder();
    if (sideFor(width()) != sideFor(event->oldSize().width())) {
        placeLabels();
        forgetPicture();
    }
}

QPixmap TerritoryMapView::makePicture(double ratio) const
{
    const double side = land().width();
    const double length = side + 2 * pictureMargin;
    QPixmap picture((QSizeF(length, length) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.translate(pictureMargin, pictureMargin);
    paintTerritories(painter, map_, summaries_, labels_, side, theme_);
    return picture;
}

void TerritoryMapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF square = land();
    const QRectF words = placeholder_ != nullptr ? QRectF(placeholder_->childrenRect()) : QRectF();
    paintSea(painter, cardBody(rect()), map_.territories.empty() ? words : square, theme_);
    if (map_.territories.empty()) {
        return;
    }
    const double ratio = pixelRatio(painter);
    if (picture_.isNull() || picture_.devicePixelRatio() != ratio) {
        picture_ = makePicture(ratio);
    }
    painter.drawPixmap(square.topLeft() - QPointF(pictureMargin, pictureMargin), picture_);
    if (const auto territory = highlighted()) {
        painter.translate(square.topLeft());
        paintTerritoryHighlight(painter, map_.territories[*territory], square.width(), theme_);
        painter.translate(-square.topLeft());
        if (!labels_[*territory] || !labels_[*territory]->isWhole) {
            paintTerritoryCaption(painter, realmOf(*territory), boundsOf(*territory), rect(),
                                  theme_);
        }
    }
}

void TerritoryMapView::hover(std::optional<std::size_t> territory)
{
    if (territory == hovered_) {
        return;
    }
    hovered_ = territory;
    if (hovered_) {
        setCursor(Qt::PointingHandCursor);
    } else {
        unsetCursor();
    }
    update();
    Q_EMIT highlightedChanged();
}

void TerritoryMapView::moveTo(std::optional<std::size_t> territory)
{
    if (!territory || *territory >= map_.territories.size()) {
        return;
    }
    current_ = *territory;
    showsFocus_ = true;
    // Where the pointer happens to rest counts no more until it moves.
    pointer_.reset();
    hovered_.reset();
    update();
    tellFocus();
    Q_EMIT highlightedChanged();
}

void TerritoryMapView::tellFocus()
{
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(static_cast<int>(current_));
    QAccessible::updateAccessibility(&event);
}

void TerritoryMapView::mouseMoveEvent(QMouseEvent* event)
{
    pointer_ = event->position();
    hover(territoryAtPoint(*pointer_));
}

void TerritoryMapView::mousePressEvent(QMouseEvent* event)
{
    pressed_ =
        event->button() == Qt::LeftButton ? territoryAtPoint(event->position()) : std::nullopt;
    if (pressed_) {
        current_ = *pressed_;
        showsFocus_ = false;
    }
}

void TerritoryMapView::mouseReleaseEvent(QMouseEvent* event)
{
    const auto pressed = std::exchange(pressed_, std::nullopt);
    if (event->button() == Qt::LeftButton && pressed
        && territoryAtPoint(event->position()) == pressed) {
        select(*pressed);
    }
}

void TerritoryMapView::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    pointer_.reset();
    hover(std::nullopt);
}

void TerritoryMapView::keyPressEvent(QKeyEvent* event)
{
    if (map_.territories.empty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        moveTo(neighbour(map_, current_, MapDirection::left));
        break;
    case Qt::Key_Right:
        moveTo(neighbour(map_, current_, MapDirection::right));
        break;
    case Qt::Key_Up:
        moveTo(neighbour(map_, current_, MapDirection::up));
        break;
    case Qt::Key_Down:
        moveTo(neighbour(map_, current_, MapDirection::down));
        break;
    case Qt::Key_PageUp:
        moveTo(current_ == 0 ? 0 : current_ - 1);
        break;
    case Qt::Key_PageDown:
        moveTo(std::min(current_ + 1, map_.territories.size() - 1));
        break;
    case Qt::Key_Home:
        moveTo(0);
        break;
    case Qt::Key_End:
        moveTo(map_.territories.size() - 1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (returnOrSpacePress(*event) == KeyPress::press) {
            select(current_);
        }
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void TerritoryMapView::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        moveTo(current_);
        break;
    case Qt::MouseFocusReason:
        showsFocus_ = false;
        break;
    default:
        // As it was when the focus left, with the window for instance.
        update();
        Q_EMIT highlightedChanged();
    }
}

void TerritoryMapView::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
    Q_EMIT highlightedChanged();
}

}  // namespace gruk
