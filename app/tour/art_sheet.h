#pragma once

#include <QWidget>

#include "app/theme/art.h"
#include "app/theme/icons.h"

class QLayout;

namespace gruk::tour {

/// A contact sheet of what is drawn by hand: every icon in its sizes and in several colours, every
/// picture of the Gruk from 52 to 400 pixels, and the program's icon.
class ArtSheet : public QWidget {
    Q_OBJECT

public:
    explicit ArtSheet(Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QLayout* makeIcons();
    [[nodiscard]] QLayout* makePictures();
    [[nodiscard]] QLayout* makeSizes();

    Theme& theme_;
};

}  // namespace gruk::tour
