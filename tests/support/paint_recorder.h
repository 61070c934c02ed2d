#pragma once

#include <vector>

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>
#include <QTextItem>

namespace gruk::test {

/// A device that keeps what is painted on it instead of showing it: each text and each path with
/// the pen that it was painted with, and each picture.
class PaintRecorder final : public QPaintDevice {
public:
    struct Text {
        QString text;
        /// Where its base line begins.
        QPointF start;
        QFont font;
        QColor colour;
    };
    struct Path {
        QPainterPath path;
        QPen pen;
    };

    [[nodiscard]] const std::vector<Text>& texts() const { return engine_.texts; }
    [[nodiscard]] const std::vector<Path>& paths() const { return engine_.paths; }
    [[nodiscard]] const std::vector<QPixmap>& pixmaps() const { return engine_.pixmaps; }

    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        constexpr int side = 1'000;
        constexpr int dotsPerInch = 96;
        switch (metric) {
        case PdmDepth:
            return 32;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dotsPerInch;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return side;
        }
    }

private:
    class Engine final : public QPaintEngine {
    public:
        Engine() : QPaintEngine(AllFeatures) {}

        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap& pixmap, const QRectF&) override
        {
            pixmaps.push_back(pixmap);
        }
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawPath(const QPainterPath& path) override
        {
            paths.push_back({path, painter()->pen()});
        }
        void drawTextItem(const QPointF& start, const QTextItem& item) override
        {
            texts.push_back({item.text(), start, item.font(), painter()->pen().color()});
        }
        [[nodiscard]] Type type() const override { return User; }

        std::vector<Text> texts;
        std::vector<Path> paths;
        std::vector<QPixmap> pixmaps;
    };

    mutable Engine engine_;
};

}  // namespace gruk::test
