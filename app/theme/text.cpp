#include "app/theme/text.h"

#include <QLocale>

#include "core/patrol/byte_format.h"
#include "platform/foundation/utf8.h"

namespace gruk {

QString displayString(std::string_view bytes)
{
    return QString::fromStdString(displayText(bytes));
}

QString displayName(std::string_view bytes)
{
    constexpr char16_t pictures = 0x2400;
    constexpr char16_t pictureOfDelete = 0x2421;
    QString name = displayString(bytes);
    for (QChar& character : name) {
        const char16_t code = character.unicode();
        if (code < 0x20) {
            character = QChar(static_cast<char16_t>(pictures + code));
        } else if (code == 0x7F) {
            character = QChar(pictureOfDelete);
        }
    }
    return name;
}

QString toolTipText(const QString& text)
{
    return QStringLiteral("<p style=\"white-space: pre-wrap\">%1</p>").arg(text.toHtmlEscaped());
}

QString bytesText(Bytes bytes)
{
    return QString::fromStdString(ByteFormat::string(bytes));
}

QString groupedNumber(qint64 count)
{
    return QLocale().toString(count);
}

}  // namespace gruk
