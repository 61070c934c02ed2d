#pragma once

namespace gruk {

/// Makes every `TerritoryMapView` a list to assistive technology, with one child a territory that
/// can be pressed. May be called again.
void installTerritoryMapAccessible();

}  // namespace gruk
