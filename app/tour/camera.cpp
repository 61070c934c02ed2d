#include "app/tour/camera.h"

#include <cstdio>
#include <unordered_set>
#include <utility>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QWidget>

namespace gruk::tour {

namespace {

/// A picture of text and paper has hundreds of colours; an empty one has a handful.
constexpr std::size_t fewestColours = 24;

bool showsSomething(const QImage& image)
{
    std::unordered_set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            colours.insert(image.pixel(x, y));
            if (colours.size() >= fewestColours) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

Camera::Camera(std::filesystem::path folder) : folder_(std::move(folder))
{
    std::filesystem::create_directories(folder_);
}

void Camera::take(QWidget& widget, const std::string& name, int scale)
{
    QImage image(widget.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    // Black shows what a widget left out; what is meant to be left out lies on grey.
    image.fill(widget.testAttribute(Qt::WA_TranslucentBackground) ? Qt::gray : Qt::black);
    widget.render(&image);

    const std::filesystem::path file = folder_ / (name + ".png");
    const bool isWritten = image.save(QFile::decodeName(file.c_str()), "PNG");
    const bool isGood = isWritten && showsSomething(image);
    ++taken_;
    if (!isGood) {
        ++failed_;
        std::fprintf(stderr, "%s: %s\n", file.c_str(),
                     isWritten ? "the picture is blank" : "cannot be written");
    }
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
}

}  // namespace gruk::tour
