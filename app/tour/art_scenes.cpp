#include "app/tour/art_scenes.h"

#include <string>
#include <utility>

#include "app/tour/art_sheet.h"

namespace gruk::tour {

namespace {

constexpr std::pair<const char*, AppPaletteTheme> palettes[] = {
    {"woodland", AppPaletteTheme::woodland},
    {"ember", AppPaletteTheme::ember},
    {"tide", AppPaletteTheme::tide},
    {"dusk", AppPaletteTheme::dusk},
};

}  // namespace

void showArt(Tour& tour)
{
    ArtSheet sheet(tour.theme());
    sheet.ensurePolished();
    sheet.resize(sheet.sizeHint());
    for (const auto& [name, palette] : palettes) {
        tour.theme().setPaletteTheme(palette);
        tour.setScheme(ColourScheme::dark);
        tour.camera().take(sheet, std::string("33-art-") + name + "-dark");
        tour.setScheme(ColourScheme::light);
        tour.camera().take(sheet, std::string("33-art-") + name + "-light");
    }
    tour.theme().setPaletteTheme(AppPaletteTheme::woodland);
}

}  // namespace gruk::tour
