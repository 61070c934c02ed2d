#pragma once

#include <cstdint>

#include <QIcon>
#include <QWidget>

#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// The pictures of the Gruk, each square: as he greets, and one for each page of the walkthrough.
enum class Art : std::uint8_t {
    grukHero,
    grukStateMap,
    grukStateReport,
    grukStatePatrol,
    grukStateCelebrate,
    grukStateAttack,
};
inline constexpr int artCount = static_cast<int>(Art::grukStateAttack) + 1;

/// Paints the picture in the colours of the theme, as large as fits into `bounds` and in its
/// middle, as sharp as what `painter` draws on. Rendered once for each size and look and kept by
/// the toolkit's cache.
void paintArt(QPainter& painter, const QRectF& bounds, Art art, const Theme& theme);

/// A drawing in the colours of the light woodland table, as it is committed, in those of `palette`
/// and `scheme`. What is marked as steady there keeps light and dark as they are: the eyes of a
/// creature are dark at night too.
[[nodiscard]] QByteArray recoloured(const QByteArray& svg, AppPaletteTheme palette,
                                    ColourScheme scheme);

/// One picture, in the middle of the widget. To assistive technology a picture of that name; with
/// an empty name it is decoration.
class ArtView : public QWidget {
    Q_OBJECT

public:
    ArtView(Theme& theme, Art art, const QString& accessibleName, QWidget* parent = nullptr);

    [[nodiscard]] Art art() const { return art_; }
    void setArt(Art art);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    Art art_;
};

/// The program's icon for its windows, in every size.
[[nodiscard]] QIcon programIcon();

}  // namespace gruk
