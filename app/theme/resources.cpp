#include "app/theme/resources.h"

#include <QFile>

#include "platform/foundation/require.h"

/// The resources of a static library are in the program only if something asks for them by name;
/// the toolkit's macro does, outside of every namespace.
static void registerThemeResources()
{
    Q_INIT_RESOURCE(theme);
}

namespace gruk {

QByteArray themeResource(const QString& name)
{
    [[maybe_unused]] static const bool isRegistered = (registerThemeResources(), true);
    QFile file(QStringLiteral(":/gruk/") + name);
    GRUK_REQUIRE(file.open(QIODevice::ReadOnly), "a drawing is not compiled in");
    return file.readAll();
}

}  // namespace gruk
