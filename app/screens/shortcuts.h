#pragma once

#include <vector>

#include <QString>

#include "app/model/app_model.h"
#include "app/theme/icons.h"

namespace gruk {

/// A place that everybody has, one click away.
struct Shortcut {
    QString id;
    QString name;
    FileURL url;
    Icon systemImage;
};

/// The places that can be opened now and are no realm of their own, in the order of the sidebar.
[[nodiscard]] std::vector<Shortcut> shortcuts(const AppModel& model);

}  // namespace gruk
