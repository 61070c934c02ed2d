#pragma once

#include <QByteArray>
#include <QString>

namespace gruk {

/// The drawing that is compiled in under that name, as "icons/house.svg" (app/theme/theme.qrc).
/// Stops the program when there is none: the names are the program's own.
[[nodiscard]] QByteArray themeResource(const QString& name);

}  // namespace gruk
