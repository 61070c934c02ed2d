#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QPixmap>
#include <QWidget>

#include "app/screens/territory_geometry.h"
#include "app/screens/territory_map_painter.h"
#include "app/theme/theme.h"

namespace gruk {

/// All realms as land in a sea, each by its size: a square as large as the width allows, up to 560.
/// The land under the pointer or the keyboard is highlighted, with its name and size. The arrow
/// keys go to the land beside, Page Up and Page Down through all of them in the order of the
/// realms, Home and End to the first and the last; Return and Space select.
///
/// To assistive technology a list with one child a territory, named "{realm}, {size}".
class TerritoryMapView : public QWidget {
    Q_OBJECT

public:
    explicit TerritoryMapView(Theme& theme, QWidget* parent = nullptr);

    /// Divides the map anew, unless these are what it shows already. The keyboard, and what was
    /// asked for, stay with their realms.
    void setSummaries(std::vector<RealmSummary> summaries);
    [[nodiscard]] const std::vector<RealmSummary>& summaries() const { return summaries_; }
    [[nodiscard]] const TerritoryMap& map() const { return map_; }

    /// The square that the map takes of the widget.
    [[nodiscard]] QRectF land() const;
    [[nodiscard]] const RealmSummary& realmOf(std::size_t territory) const;
    /// "{realm}, {size}".
    [[nodiscard]] QString nameOf(std::size_t territory) const;
    [[nodiscard]] QRect boundsOf(std::size_t territory) const;
    /// What stands at a point of the widget.
    [[nodiscard]] std::optional<std::size_t> territoryAtPoint(const QPointF& point) const;

    /// The territory that the keyboard is on, while the map has the focus.
    [[nodiscard]] std::optional<std::size_t> focused() const;
    /// The one that is highlighted: under the pointer, else the keyboard's, else what was asked
    /// for.
    [[nodiscard]] std::optional<std::size_t> highlighted() const;
    /// Highlights the land of the realm at that place of the summaries, or of none.
    void highlightRealm(std::optional<std::size_t> summary);

    void select(std::size_t territory);

    /// Takes over what lies on the sea while there is no land.
    void setPlaceholder(QWidget* placeholder);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void selected(const gruk::RealmSummary& realm);
    void highlightedChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] std::optional<std::string> pathOf(std::optional<std::size_t> territory) const;
    [[nodiscard]] std::optional<std::size_t>
    territoryOf(const std::optional<std::string>& path) const;
    void placeLabels();
    void placePlaceholder();
    void forgetPicture();
    [[nodiscard]] QPixmap makePicture(double ratio) const;
    void hover(std::optional<std::size_t> territory);
    void moveTo(std::optional<std::size_t> territory);
    void tellFocus();

    Theme& theme_;
    std::vector<RealmSummary> summaries_;
    TerritoryMap map_;
    /// One a territory.
    TerritoryLabels labels_;
    QWidget* placeholder_ = nullptr;
    /// All land with its borders and labels, which take long to draw.
    QPixmap picture_;
    /// Where the pointer rests over the map, while it counts.
    std::optional<QPointF> pointer_;
    std::optional<std::size_t> hovered_;
    std::optional<std::size_t> pressed_;
    std::optional<std::size_t> asked_;
    std::size_t current_ = 0;
    /// Whether the focus came by the keyboard, so that it has to be seen.
    bool showsFocus_ = false;
};

}  // namespace gruk
