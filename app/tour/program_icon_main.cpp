#include <cstdio>
#include <cstdlib>

#include <QGuiApplication>

#include "app/theme/art.h"

/// Writes the program's icon into the folders of an icon theme: gruk_program_icon THEME.
int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("gruk_program_icon: name the folder of the icon theme\n", stderr);
        return EXIT_FAILURE;
    }
    for (const int size : {48, 128}) {
        const QString file = QStringLiteral("%1/%2x%2/apps/io.github.gruk.Gruk.png")
                                 .arg(arguments.constLast())
                                 .arg(size);
        if (!gruk::programIcon().pixmap(QSize(size, size)).save(file, "PNG")) {
            std::fprintf(stderr, "%s: cannot be written\n", qPrintable(file));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
