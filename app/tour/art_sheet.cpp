#include "app/tour/art_sheet.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>

#include "app/theme/label.h"

namespace gruk::tour {

namespace {

constexpr int iconSizes[] = {Measure::smallIconSize, Measure::iconSize, Measure::largeIconSize, 48};
constexpr int iconColumns = 8;
constexpr Role iconRoles[] = {Role::ink, Role::fernDark, Role::red, Role::blue};
constexpr int pictureSize = 240;
constexpr int pictureColumns = 6;
constexpr int largestPicture = 400;
constexpr int smallSizes[] = {52, 96};
constexpr int programIconSizes[] = {16, 24, 32, 48, 128};

}  // namespace

ArtSheet::ArtSheet(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::pageMargin, Measure::pageMargin, Measure::pageMargin,
                               Measure::pageMargin);
    column->setSpacing(Measure::wide);
    column->addLayout(makeIcons());
    column->addLayout(makePictures());
    column->addLayout(makeSizes());
}

QLayout* ArtSheet::makeIcons()
{
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(Measure::wide);
    grid->setVerticalSpacing(Measure::small);
    for (int index = 0; index < iconCount; ++index) {
        auto* row = new QHBoxLayout;
        row->setSpacing(Measure::medium);
        for (std::size_t i = 0; i < std::size(iconSizes); ++i) {
            auto* icon = new IconLabel(theme_, static_cast<Icon>(index), iconSizes[i]);
            icon->setColour(iconRoles[i]);
            row->addWidget(icon, 0, Qt::AlignVCenter);
        }
        row->addStretch();
        grid->addLayout(row, index / iconColumns, index % iconColumns);
    }
    return grid;
}

QLayout* ArtSheet::makePictures()
{
    auto* grid = new QGridLayout;
    grid->setSpacing(Measure::large);
    for (int index = 0; index < artCount; ++index) {
        auto* view = new ArtView(theme_, static_cast<Art>(index), {});
        view->setFixedSize(pictureSize, pictureSize);
        grid->addWidget(view, index / pictureColumns, index % pictureColumns);
    }
    return grid;
}

QLayout* ArtSheet::makeSizes()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::large);
    auto* large = new ArtView(theme_, Art::grukHero, {});
    large->setFixedSize(largestPicture, largestPicture);
    row->addWidget(large);
    auto* grid = new QGridLayout;
    grid->setSpacing(Measure::medium);
    int line = 0;
    for (const int size : smallSizes) {
        for (int index = 0; index < artCount; ++index) {
            auto* view = new ArtView(theme_, static_cast<Art>(index), {});
            view->setFixedSize(size, size);
            grid->addWidget(view, line, index, Qt::AlignCenter);
        }
        ++line;
    }
    auto* programIcons = new QHBoxLayout;
    programIcons->setSpacing(Measure::large);
    for (const int size : programIconSizes) {
        auto* label = new QLabel;
        label->setPixmap(programIcon().pixmap(size));
        programIcons->addWidget(label, 0, Qt::AlignBottom);
    }
    programIcons->addStretch();
    grid->addLayout(programIcons, line, 0, 1, artCount);
    row->addLayout(grid);
    row->addStretch();
    return row;
}

void ArtSheet::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), theme_.colour(Role::paper));
}

}  // namespace gruk::tour
