#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include <QImage>
#include <QWidget>

#include "app/theme/icons.h"
#include "tests/support/paint_recorder.h"

namespace gruk::test {

/// Whether two pictures have one shape, whatever their colours and however strong these are.
[[nodiscard]] inline bool haveOneShape(const QPixmap& one, const QPixmap& other)
{
    /// What rounding makes of faint colours.
    constexpr double nearly = 0.04;
    const auto alphas = [](const QPixmap& pixmap) {
        const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        std::vector<double> all;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                all.push_back(qAlpha(image.pixel(x, y)));
            }
        }
        const double strongest = all.empty() ? 0 : *std::max_element(all.begin(), all.end());
        for (double& alpha : all) {
            alpha /= std::max(strongest, 1.0);
        }
        return all;
    };
    const auto isNear = [](double a, double b) { return std::abs(a - b) <= nearly; };
    return one.size() == other.size() && std::ranges::equal(alphas(one), alphas(other), isNear);
}

/// In pixels of the screen. What is larger is a drawing or a page, and takes long to compare.
inline constexpr int widestIcon = 128;

/// The icons that `widget` and what is in it paint, in the order of painting.
[[nodiscard]] inline std::vector<Icon> paintedIcons(QWidget& widget)
{
    PaintRecorder recorder;
    widget.render(&recorder, QPoint(), QRegion(), QWidget::DrawChildren);
    std::vector<Icon> icons;
    for (const QPixmap& pixmap : recorder.pixmaps()) {
        if (pixmap.width() > widestIcon) {
            continue;
        }
        for (int index = 0; index < iconCount; ++index) {
            const auto icon = static_cast<Icon>(index);
            PaintRecorder alone;
            QPainter painter(&alone);
            drawIcon(painter, {}, icon, Qt::black, pixmap.width());
            painter.end();
            if (haveOneShape(alone.pixmaps().front(), pixmap)) {
                icons.push_back(icon);
            }
        }
    }
    return icons;
}

}  // namespace gruk::test
