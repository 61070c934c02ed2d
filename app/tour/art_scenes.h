#pragma once

#include "app/tour/tour.h"

namespace gruk::tour {

/// Every icon and every picture of the Gruk in its sizes, in each palette, light and dark.
void showArt(Tour& tour);

}  // namespace gruk::tour
